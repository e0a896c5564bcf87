// SPDX-License-Identifier: MIT
#include "Voice.h"

#include <pulse/error.h>
#include <pulse/operation.h>

#include <algorithm>
#include <stdexcept>

namespace talvera::test {

using namespace std::chrono_literals;

namespace {

void signal(PulseLoop* loop) {
    loop->signal();
}

auto firstNumber(const std::vector<std::int16_t>& numbers) {
    return std::find_if(numbers.begin(), numbers.end(), [](std::int16_t number) { return number != 0; });
}

} // namespace

Voice::Voice(const std::string& address, const std::string& sink, int rate, int channels)
    : m_channels(static_cast<std::size_t>(channels)) {
    const PulseLoop::Lock lock(m_loop);
    m_context = pa_context_new(m_loop.api(), "voice");
    pa_context_set_state_callback(
        m_context, [](pa_context*, void* loop) { signal(static_cast<PulseLoop*>(loop)); }, &m_loop);
    pa_context_connect(m_context, address.c_str(), PA_CONTEXT_NOAUTOSPAWN, nullptr);
    const bool connected = m_loop.waitUntil(
        m_context, 10s, [this] { return pa_context_get_state(m_context) == PA_CONTEXT_READY; });
    if (!connected)
        throw std::runtime_error("the voice has no sound server");

    const pa_sample_spec spec{PA_SAMPLE_S16NE, static_cast<std::uint32_t>(rate),
                              static_cast<std::uint8_t>(channels)};
    m_stream = pa_stream_new(m_context, "voice", &spec, nullptr);
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* loop) { signal(static_cast<PulseLoop*>(loop)); }, &m_loop);
    pa_stream_set_write_callback(
        m_stream, [](pa_stream*, std::size_t bytes, void* self) { static_cast<Voice*>(self)->write(bytes); },
        this);
    constexpr auto serverDecides = static_cast<std::uint32_t>(-1);
    // Much is written ahead, in small pieces, so that a busy machine doesn't make the voice stammer.
    const auto ahead = static_cast<std::uint32_t>(pa_usec_to_bytes(250000, &spec));
    const auto piece = static_cast<std::uint32_t>(pa_usec_to_bytes(10000, &spec));
    const pa_buffer_attr buffer{serverDecides, ahead, serverDecides, piece, serverDecides};
    pa_stream_connect_playback(m_stream, sink.c_str(), &buffer, PA_STREAM_NOFLAGS, nullptr, nullptr);
    const bool speaking =
        m_loop.waitUntil(m_context, 10s, [this] { return pa_stream_get_state(m_stream) == PA_STREAM_READY; });
    if (!speaking)
        throw std::runtime_error(std::string("the voice cannot speak: ") +
                                 pa_strerror(pa_context_errno(m_context)));
}

Voice::~Voice() {
    m_loop.stop();
    if (m_stream) {
        pa_stream_disconnect(m_stream);
        pa_stream_unref(m_stream);
    }
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
}

void Voice::say(std::vector<std::int16_t> samples) {
    const PulseLoop::Lock lock(m_loop);
    m_words = std::move(samples);
    m_nextWord = 0;
}

void Voice::sayAndWait(std::vector<std::int16_t> samples) {
    std::int64_t end = 0;
    {
        const PulseLoop::Lock lock(m_loop);
        end = m_frame + static_cast<std::int64_t>(samples.size());
        m_words = std::move(samples);
        m_nextWord = 0;
    }
    while (framesSaid() < end)
        ;
}

void Voice::count() {
    std::int64_t first = 0;
    {
        const PulseLoop::Lock lock(m_loop);
        m_counting = true;
        first = m_frame;
    }
    while (framesSaid() <= first + pa_stream_get_sample_spec(m_stream)->rate / 10)
        ;
}

std::int64_t Voice::frameOf(std::int16_t number, std::int64_t about) {
    const std::int64_t frame = number - 1;
    return frame + (about - frame + countPeriod / 2) / countPeriod * countPeriod;
}

int Voice::gapsIn(const std::vector<std::int16_t>& numbers) {
    int gaps = 0;
    for (auto next = firstNumber(numbers); next != numbers.end() && next + 1 != numbers.end(); ++next)
        gaps += next[1] != *next % countPeriod + 1;
    return gaps;
}

std::int16_t Voice::firstOf(const std::vector<std::int16_t>& numbers) {
    const auto first = firstNumber(numbers);
    return first == numbers.end() ? std::int16_t{0} : *first;
}

std::int64_t Voice::framesSaid() {
    const PulseLoop::Lock lock(m_loop);
    struct Answer {
        PulseLoop* loop;
        bool came = false;
    } answer{&m_loop};
    auto* const asked = pa_stream_update_timing_info(
        m_stream,
        [](pa_stream*, int, void* to) {
            auto* const waiting = static_cast<Answer*>(to);
            waiting->came = true;
            waiting->loop->signal();
        },
        &answer);
    while (!answer.came)
        m_loop.wait();
    pa_operation_unref(asked);
    pa_usec_t time = 0;
    if (pa_stream_get_time(m_stream, &time) < 0)
        return 0;
    const auto rate = pa_stream_get_sample_spec(m_stream)->rate;
    return static_cast<std::int64_t>(time * rate / 1000000);
}

void Voice::write(std::size_t bytes) {
    const auto frames = bytes / sizeof(std::int16_t) / m_channels;
    std::vector<std::int16_t> samples;
    samples.reserve(frames * m_channels);
    for (std::size_t frame = 0; frame < frames; ++frame)
        samples.insert(samples.end(), m_channels, nextSample());
    pa_stream_write(m_stream, samples.data(), samples.size() * sizeof(std::int16_t), nullptr, 0,
                    PA_SEEK_RELATIVE);
}

std::int16_t Voice::nextSample() {
    const auto frame = m_frame++;
    if (m_nextWord < m_words.size())
        return m_words[m_nextWord++];
    return m_counting ? static_cast<std::int16_t>(frame % countPeriod + 1) : std::int16_t{0};
}

} // namespace talvera::test
