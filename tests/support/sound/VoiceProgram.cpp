// SPDX-License-Identifier: MIT
// voice ADDRESS SINK RATE CHANNELS: plays to a sink of the sound server at ADDRESS, silence as long as
// nothing else is asked for. Every channel says the same. A program of its own, so that it doesn't stammer
// when the test is stopped or slowed down. It reads commands and answers each with a line, after a first line
// that says "ready":
//   say N, then N samples of 16 bits     says them as soon as possible; answers the frame behind them
//   count                                says each frame's number from now on; answers the first such frame
//   said                                 answers the frame that is being said
//   await F                              answers when frame F has been said
#include <pulse/context.h>
#include <pulse/rtclock.h>
#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

namespace {

constexpr std::int64_t countPeriod = 30000; // as in Voice.h

class Lock {
public:
    explicit Lock(pa_threaded_mainloop* loop)
        : m_loop(loop) {
        pa_threaded_mainloop_lock(loop);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { pa_threaded_mainloop_unlock(m_loop); }

private:
    pa_threaded_mainloop* m_loop;
};

class Speaker {
public:
    Speaker(const char* address, const char* sink, std::uint32_t rate, std::uint8_t channels)
        : m_spec{PA_SAMPLE_S16NE, rate, channels} {
        const Lock lock(m_loop);
        pa_threaded_mainloop_start(m_loop);
        m_context = pa_context_new(pa_threaded_mainloop_get_api(m_loop), "voice");
        pa_context_set_state_callback(
            m_context, [](pa_context*, void* loop) { wake(loop); }, m_loop);
        pa_context_connect(m_context, address, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        while (pa_context_get_state(m_context) != PA_CONTEXT_READY) {
            if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))
                std::exit(1);
            pa_threaded_mainloop_wait(m_loop);
        }
        m_stream = pa_stream_new(m_context, "voice", &m_spec, nullptr);
        pa_stream_set_state_callback(
            m_stream, [](pa_stream*, void* loop) { wake(loop); }, m_loop);
        pa_stream_set_write_callback(
            m_stream,
            [](pa_stream*, std::size_t bytes, void* self) { static_cast<Speaker*>(self)->write(bytes); },
            this);
        // Much is written ahead, in small pieces, so that a busy machine doesn't make it stammer.
        constexpr auto serverDecides = static_cast<std::uint32_t>(-1);
        const pa_buffer_attr buffer{serverDecides, bytesOf(250), serverDecides, bytesOf(10), serverDecides};
        pa_stream_connect_playback(m_stream, sink, &buffer, PA_STREAM_NOFLAGS, nullptr, nullptr);
        while (pa_stream_get_state(m_stream) != PA_STREAM_READY) {
            if (!PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)))
                std::exit(1);
            pa_threaded_mainloop_wait(m_loop);
        }
    }

    std::int64_t say(std::vector<std::int16_t> samples) {
        const Lock lock(m_loop);
        m_words = std::move(samples);
        m_nextWord = 0;
        return m_frame + static_cast<std::int64_t>(m_words.size());
    }

    std::int64_t count() {
        const Lock lock(m_loop);
        m_counting = true;
        return m_frame;
    }

    std::int64_t said() {
        const Lock lock(m_loop);
        m_answered = false;
        auto* const asked = pa_stream_update_timing_info(
            m_stream,
            [](pa_stream*, int, void* self) {
                static_cast<Speaker*>(self)->m_answered = true;
                wake(static_cast<Speaker*>(self)->m_loop);
            },
            this);
        while (asked && !m_answered && PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)))
            pa_threaded_mainloop_wait(m_loop);
        if (asked)
            pa_operation_unref(asked);
        pa_usec_t time = 0;
        if (pa_stream_get_time(m_stream, &time) < 0)
            return 0;
        return static_cast<std::int64_t>(time * m_spec.rate / 1000000);
    }

    /// Sleeps as long as the frames until then take, since the server doesn't tell when it has come so far.
    std::int64_t await(std::int64_t frame) {
        auto now = said();
        for (; now < frame && PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)); now = said())
            std::this_thread::sleep_for(std::chrono::milliseconds((frame - now) * 1000 / m_spec.rate + 1));
        return now;
    }

private:
    static void wake(void* loop) { pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0); }

    std::uint32_t bytesOf(pa_usec_t milliseconds) const {
        return static_cast<std::uint32_t>(pa_usec_to_bytes(milliseconds * 1000, &m_spec));
    }

    void write(std::size_t bytes) {
        std::vector<std::int16_t> samples;
        for (auto frames = bytes / pa_frame_size(&m_spec); frames > 0; --frames)
            samples.insert(samples.end(), m_spec.channels, nextSample());
        pa_stream_write(m_stream, samples.data(), samples.size() * sizeof(std::int16_t), nullptr, 0,
                        PA_SEEK_RELATIVE);
    }

    std::int16_t nextSample() {
        const auto frame = m_frame++;
        if (m_nextWord < m_words.size())
            return m_words[m_nextWord++];
        return m_counting ? static_cast<std::int16_t>(frame % countPeriod + 1) : std::int16_t{0};
    }

    pa_sample_spec m_spec;
    pa_threaded_mainloop* m_loop = pa_threaded_mainloop_new();
    pa_context* m_context = nullptr;
    pa_stream* m_stream = nullptr;
    std::int64_t m_frame = 0;
    bool m_counting = false;
    bool m_answered = false;
    std::vector<std::int16_t> m_words;
    std::size_t m_nextWord = 0;
};

void answer(std::int64_t frame) {
    std::printf("%lld\n", static_cast<long long>(frame));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5)
        return 2;
    Speaker speaker(argv[1], argv[2], static_cast<std::uint32_t>(std::atoi(argv[3])),
                    static_cast<std::uint8_t>(std::atoi(argv[4])));
    std::puts("ready");
    std::fflush(stdout);

    char line[64];
    while (std::fgets(line, sizeof line, stdin)) {
        if (std::strncmp(line, "say ", 4) == 0) {
            std::vector<std::int16_t> samples(std::strtoul(line + 4, nullptr, 10));
            if (std::fread(samples.data(), sizeof(std::int16_t), samples.size(), stdin) != samples.size())
                break;
            answer(speaker.say(std::move(samples)));
        } else if (std::strncmp(line, "await ", 6) == 0) {
            answer(speaker.await(std::strtoll(line + 6, nullptr, 10)));
        } else if (std::strcmp(line, "count\n") == 0) {
            answer(speaker.count());
        } else {
            answer(speaker.said());
        }
    }
    std::_Exit(0);
}
