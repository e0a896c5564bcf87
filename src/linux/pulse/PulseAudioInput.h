// SPDX-License-Identifier: MIT
#pragma once

#include "linux/pulse/FrameAssembler.h"
#include "linux/pulse/PulseConnection.h"
#include "linux/pulse/PulseRecordStream.h"
#include "platform/sound/AudioEngine.h"

#include <functional>
#include <optional>

namespace talvera {

/// The microphone behind a PulseAudio server, or behind PipeWire, which speaks the same protocol. The device
/// is opened by start() and let go by stop(); between two presses the device is closed. When it goes
/// away in the middle of a recording, what it had heard is handed over and then comes nothing more.
class PulseAudioInput final : public AudioEngine {
public:
    explicit PulseAudioInput(PulseConnection& connection)
        : m_connection(connection) {}
    ~PulseAudioInput() override;

    /// Waits for a server that has just come back, but not for long.
    AudioFormat inputFormat() override;
    void installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) override;
    void removeTap() override;
    void start() override;
    void stop() override;
    void setOnLost(std::function<void()> onLost) override;

private:
    void open(const Microphone& microphone, PulseRecordStream::Routing routing, Duration limit);

    PulseConnection& m_connection;

    // Under the connection's lock.
    std::optional<FrameAssembler> m_tap;
    std::function<void()> m_onLost;
    std::optional<PulseRecordStream> m_stream;
    AudioFormat m_streamFormat;
};

} // namespace talvera
