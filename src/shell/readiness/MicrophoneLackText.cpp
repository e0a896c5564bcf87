// SPDX-License-Identifier: MIT
#include "shell/readiness/MicrophoneLackText.h"

#include "text/Localization.h"

namespace talvera {

QString microphoneLackText(MicrophoneLack lack) {
    switch (lack) {
    case MicrophoneLack::None:
        return {};
    case MicrophoneLack::Answer:
        return localized("microphone.lack.answer", "The sound server hasn't answered yet.");
    case MicrophoneLack::Server:
        return localized(
            "microphone.lack.server",
            "No sound server is running. Start PipeWire or PulseAudio, or log out and in again.");
    case MicrophoneLack::Permission:
        return localized("microphone.lack.permission", "The sound server doesn't let Talvera listen.");
    case MicrophoneLack::Microphone:
        return localized("microphone.lack.microphone",
                         "There is no microphone. Plug one in, or switch one on in the sound settings.");
    }
    Q_UNREACHABLE();
}

} // namespace talvera
