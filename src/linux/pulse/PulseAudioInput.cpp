// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseAudioInput.h"

#include "linux/support/privateMemory.h"
#include "platform/system/PlatformError.h"

#include <pulse/rtclock.h>

#include <utility>

namespace talvera {

using namespace std::chrono_literals;

namespace {

/// How long a press may wait for the server, all in all.
constexpr auto patience = 1s;
/// The same for the question about the format, which is asked right before.
constexpr auto formatPatience = 200ms;
/// How long a release waits for sound that is still on its way, should it stay away: with a wired microphone
/// it comes in some 40 ms, with a wireless one it may have 100 ms and more to go, and a busy machine may add
/// to that.
constexpr auto catchUpLimit = 400ms;

Duration monotonicNow() {
    return std::chrono::microseconds(pa_rtclock_now());
}

[[noreturn]] void fail(AudioEngineFailure code, const QString& message) {
    throw PlatformError(code, message);
}

} // namespace

PulseAudioInput::~PulseAudioInput() {
    stop();
}

AudioFormat PulseAudioInput::inputFormat() {
    const PulseLoop::Lock lock(m_connection.loop());
    m_connection.settle(formatPatience);
    const auto& microphone = m_connection.microphone();
    return microphone ? microphone->format : AudioFormat{};
}

void PulseAudioInput::installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) {
    const PulseLoop::Lock lock(m_connection.loop());
    m_tap.emplace(bufferFrames, format, std::move(tap));
}

void PulseAudioInput::removeTap() {
    auto& loop = m_connection.loop();
    const PulseLoop::Lock lock(loop);
    if (m_tap && m_stream && m_stream->isAlive()) {
        m_stream->catchUp(catchUpLimit, [this, &loop] {
            m_tap->flush();
            m_tap.reset();
            loop.signal();
        });
        while (m_tap)
            loop.wait();
    }
    m_tap.reset();
}

void PulseAudioInput::start() {
    keepMemoryPrivate(); // from the first word on
    const auto deadline = monotonicNow() + patience;
    const PulseLoop::Lock lock(m_connection.loop());
    if (m_stream && m_stream->isAlive())
        return;
    m_stream.reset();

    if (!m_connection.settle(patience))
        fail(AudioEngineFailure::TimedOut, QStringLiteral("the sound server does not answer"));
    if (!m_connection.context()) {
        fail(m_connection.isRefused() ? AudioEngineFailure::Refused : AudioEngineFailure::NoServer,
             QStringLiteral("no connection to the sound server"));
    }
    const auto microphone = m_connection.microphone();
    m_streamFormat = m_tap ? m_tap->format() : microphone.value_or(Microphone{}).format;
    if (!microphone || m_streamFormat.channels == 0)
        fail(AudioEngineFailure::NoInput, QStringLiteral("no microphone"));

    using enum PulseRecordStream::Routing;
    try {
        open(*microphone, microphone->isDefault ? ByServer : ByName, deadline - monotonicNow());
    } catch (const PlatformError& error) {
        // The server has sent us to a loudspeaker: the user did once, or the default is changing just now.
        if (!microphone->isDefault || error.as<AudioEngineFailure>() != AudioEngineFailure::NoInput)
            throw;
        open(*microphone, ByName, deadline - monotonicNow());
    }
}

void PulseAudioInput::open(const Microphone& microphone, PulseRecordStream::Routing routing, Duration limit) {
    if (m_tap)
        m_tap->clear();
    const auto receive = [this](const void* data, std::size_t bytes) {
        if (m_tap && m_tap->format() == m_streamFormat)
            m_tap->append(data, bytes);
    };
    const auto ended = [this] {
        if (m_tap)
            m_tap->flush();
        if (m_onLost)
            m_onLost();
    };
    try {
        m_stream.emplace(m_connection, microphone, routing, m_streamFormat, receive, ended);
        m_stream->waitUntilOpen(limit);
    } catch (...) {
        m_stream.reset();
        throw;
    }
}

void PulseAudioInput::setOnLost(std::function<void()> onLost) {
    const PulseLoop::Lock lock(m_connection.loop());
    m_onLost = std::move(onLost);
}

void PulseAudioInput::stop() {
    const PulseLoop::Lock lock(m_connection.loop());
    m_stream.reset();
}

} // namespace talvera
