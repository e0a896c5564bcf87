// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelStatus.h"

#include "text/Localization.h"

namespace talvera {

using State = MenuBarController::State;

QString statusTitle(State state) {
    switch (state) {
    case State::Idle:
    case State::Error:
        return localized("menu.status.title.idle", "Talvera");
    case State::Recording:
        return localized("menu.status.title.recording", "Listening…");
    case State::Transcribing:
        return localized("menu.status.title.transcribing", "Transcribing");
    }
    Q_UNREACHABLE();
}

QString statusSubtitle(State state, const std::optional<QString>& lastErrorMessage, bool tapToToggle) {
    switch (state) {
    case State::Idle:
        return tapToToggle ? localized("menu.status.idle.tap", "Tap to dictate")
                           : localized("menu.status.idle.hold", "Hold to dictate");
    case State::Recording:
        return tapToToggle ? localized("menu.status.recording.tap", "Tap again when you have finished")
                           : localized("menu.status.recording", "Let go when you have finished");
    case State::Transcribing:
        return localized("menu.status.transcribing", "Your words are on their way");
    case State::Error:
        return lastErrorMessage ? *lastErrorMessage
                                : localized("menu.status.error.fallback", "Something went wrong");
    }
    Q_UNREACHABLE();
}

QString orbLabel(State state, bool isReady) {
    switch (state) {
    case State::Idle:
        return isReady ? localized("menu.accessibility.orb.idle", "Idle, ready to record")
                       : localized("menu.accessibility.orb.notReady", "Not ready to record yet");
    case State::Recording:
        return localized("menu.accessibility.orb.recording", "Recording");
    case State::Transcribing:
        return localized("menu.accessibility.orb.transcribing", "Transcribing");
    case State::Error:
        return localized("menu.accessibility.orb.error", "Error");
    }
    Q_UNREACHABLE();
}

} // namespace talvera
