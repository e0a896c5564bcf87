// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseRecordStream.h"

#include "linux/pulse/sampleSpec.h"
#include "platform/sound/AudioEngine.h"
#include "platform/system/PlatformError.h"

#include <pulse/error.h>
#include <pulse/operation.h>

#include <cstdint>
#include <utility>

namespace talvera {

using namespace std::chrono_literals;

namespace {

/// How much sound the server gathers before it sends it. Small, so that the first and the last word come
/// quickly.
constexpr auto fragmentOfPulseAudio = 10ms;
/// Not below the 1024 frames in which PipeWire usually works: for less it would change its pace when another
/// program has the microphone open already, and lose some 40 ms of speech over it. Nor just these: then, on a
/// busy machine, the second of two programs hears nothing.
constexpr auto fragmentOfPipeWire = 25ms;

constexpr pa_usec_t microseconds(Duration duration) {
    return static_cast<pa_usec_t>(std::chrono::duration_cast<std::chrono::microseconds>(duration).count());
}

PlatformError failure(AudioEngineFailure code, const char* message) {
    return {QStringLiteral("AudioEngine"), static_cast<int>(code), QString::fromUtf8(message)};
}

AudioEngineFailure classify(int error) {
    switch (error) {
    case PA_ERR_NOENTITY:
        return AudioEngineFailure::NoInput;
    case PA_ERR_CONNECTIONREFUSED:
    case PA_ERR_CONNECTIONTERMINATED:
        return AudioEngineFailure::NoServer;
    case PA_ERR_TIMEOUT:
        return AudioEngineFailure::TimedOut;
    default:
        return AudioEngineFailure::Refused;
    }
}

} // namespace

PulseRecordStream::PulseRecordStream(PulseConnection& connection, const Microphone& microphone,
                                     Routing routing, const AudioFormat& format, Receive receive,
                                     std::function<void()> ended)
    : m_connection(connection)
    , m_fragment(connection.isPipeWire() ? fragmentOfPipeWire : fragmentOfPulseAudio)
    , m_receive(std::move(receive))
    , m_ended(std::move(ended)) {
    auto* const context = connection.context();
    if (!context)
        throw failure(AudioEngineFailure::NoServer, "no connection to the sound server");
    const auto spec = specOf(format);
    const bool sameChannels = microphone.channelMap.channels == spec.channels;
    m_stream = pa_stream_new(context, "Dictation", &spec, sameChannels ? &microphone.channelMap : nullptr);
    if (!m_stream)
        throw failure(AudioEngineFailure::Refused, pa_strerror(pa_context_errno(context)));

    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* self) { static_cast<PulseRecordStream*>(self)->onStateChange(); },
        this);
    pa_stream_set_read_callback(
        m_stream,
        [](pa_stream*, std::size_t, void* self) { static_cast<PulseRecordStream*>(self)->onReadable(); },
        this);
    pa_stream_set_moved_callback(
        m_stream, [](pa_stream*, void* self) { static_cast<PulseRecordStream*>(self)->onMoved(); }, this);

    constexpr auto serverDecides = static_cast<std::uint32_t>(-1);
    pa_buffer_attr buffer{serverDecides, serverDecides, serverDecides, serverDecides, serverDecides};
    buffer.fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(microseconds(m_fragment), &spec));
    const char* const device = routing == Routing::ByName ? microphone.device.c_str() : nullptr;
    if (pa_stream_connect_record(m_stream, device, &buffer, PA_STREAM_ADJUST_LATENCY) < 0) {
        m_error = pa_context_errno(context);
        end(State::Failed);
    }
}

PulseRecordStream::~PulseRecordStream() {
    if (m_state == State::Opening || m_state == State::Open)
        close();
    pa_stream_unref(m_stream);
}

void PulseRecordStream::waitUntilOpen(Duration limit) {
    auto& loop = m_connection.loop();
    const auto decided = [this] { return m_state != State::Opening; };
    if (!decided() && !loop.waitUntil(m_connection.context(), limit, decided)) {
        // Were the server to wake up later, it would open the microphone for a stream that isn't wanted any
        // more, and that cannot be closed before it is open. So the whole connection goes.
        m_connection.drop();
        throw failure(AudioEngineFailure::TimedOut, "the sound server does not answer");
    }
    if (m_state != State::Open)
        throw failure(classify(m_error), pa_strerror(m_error));
}

void PulseRecordStream::onStateChange() {
    switch (pa_stream_get_state(m_stream)) {
    case PA_STREAM_READY:
        m_state = State::Open;
        onMoved(); // the user may have sent us anywhere
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        m_error = pa_context_errno(pa_stream_get_context(m_stream));
        end(m_state == State::Opening ? State::Failed : State::Ended);
        break;
    default:
        return;
    }
    m_connection.loop().signal();
}

void PulseRecordStream::onMoved() {
    // A microphone that is unplugged leaves us with the next source, and that may be the loudspeaker's.
    const char* const device = pa_stream_get_device_name(m_stream);
    if (device && m_connection.isMonitor(device)) {
        m_error = PA_ERR_NOENTITY;
        end(State::Ended);
    }
}

void PulseRecordStream::onReadable() {
    while (pa_stream_readable_size(m_stream) > 0) {
        const void* data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(m_stream, &data, &bytes) < 0 || bytes == 0)
            break;
        m_received += bytes;
        m_receive(data, bytes);
        pa_stream_drop(m_stream);
    }
    if (m_target && m_received >= *m_target)
        finishCatchUp();
}

void PulseRecordStream::catchUp(Duration limit, std::function<void()> caughtUp) {
    m_caughtUp = std::move(caughtUp);
    auto* const context = pa_stream_get_context(m_stream);
    const bool silent = m_state != State::Open || pa_stream_is_suspended(m_stream) > 0;
    m_timer.emplace(m_connection.loop(), context, silent ? Duration{} : limit, [this] { finishCatchUp(); });
    if (silent)
        return;
    m_question = pa_stream_update_timing_info(
        m_stream,
        [](pa_stream*, int success, void* self) {
            if (success)
                static_cast<PulseRecordStream*>(self)->onTiming();
        },
        this);
}

void PulseRecordStream::onTiming() {
    // The latency is what the microphone has heard and we have not received yet. PipeWire doesn't count the
    // block that is not full yet: hence one fragment more.
    pa_usec_t latency = 0;
    int negative = 0;
    if (!m_caughtUp || pa_stream_get_latency(m_stream, &latency, &negative) < 0)
        return;
    const auto uncounted = m_connection.isPipeWire() ? microseconds(m_fragment) : 0;
    const auto wanted = (negative ? 0 : latency) + uncounted;
    m_target = m_received + pa_usec_to_bytes(wanted, pa_stream_get_sample_spec(m_stream));
}

void PulseRecordStream::finishCatchUp() {
    forgetQuestion();
    m_target.reset();
    m_timer.reset();
    if (const auto caughtUp = std::exchange(m_caughtUp, nullptr))
        caughtUp();
}

void PulseRecordStream::end(State state) {
    const auto before = std::exchange(m_state, state);
    if (before == State::Failed || before == State::Ended)
        return;
    close();
    if (before == State::Open)
        m_ended();
    finishCatchUp();
}

void PulseRecordStream::forgetQuestion() {
    if (auto* const question = std::exchange(m_question, nullptr)) {
        pa_operation_cancel(question);
        pa_operation_unref(question);
    }
}

void PulseRecordStream::close() {
    forgetQuestion();
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_set_read_callback(m_stream, nullptr, nullptr);
    pa_stream_set_moved_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
}

} // namespace talvera
