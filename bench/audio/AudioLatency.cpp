// SPDX-License-Identifier: MIT
// audio_latency [pulse|pipewire|both] [runs]: what the user loses of the first and of the last word, and how
// long a press and a release hold the main thread, against a sound server of its own with a virtual
// microphone. The microphone hears numbered frames, so the figures are exact to the frame, whatever is
// buffered where. (PulseAudio's virtual microphone hears some 25 ms ahead, which shows at both ends with
// opposite signs.)
#include "Ear.h"
#include "SoundServer.h"
#include "Voice.h"
#include "concurrency/QtMainActor.h"
#include "platform/linux/pulse/PulseAudioInput.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int rate = 48000;

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double milliseconds(std::int64_t frames) {
    return 1000.0 * static_cast<double>(frames) / rate;
}

class Figure {
public:
    explicit Figure(const char* name)
        : m_name(name) {}
    void add(double value) { m_values.push_back(value); }
    void print() {
        std::sort(m_values.begin(), m_values.end());
        std::printf("%-52s median %7.2f   min %7.2f   max %7.2f\n", m_name, m_values[m_values.size() / 2],
                    m_values.front(), m_values.back());
    }

private:
    const char* m_name;
    std::vector<double> m_values;
};

bool measure(SoundServer::Kind kind, int runs) {
    SoundServer server(kind);
    server.start();
    server.addMicrophone(QStringLiteral("microphone"), rate);
    Voice voice(server.address(), server.feedOf(), rate);
    voice.count();
    QtMainActor actor;
    PulseConnection connection(actor, server.address());
    connection.waitForAnswer(5s);

    Figure starting("start() holds the main thread, ms");
    Figure firstSample("start() to the first sample in our hands, ms");
    Figure lostAtStart("speech lost at the beginning, ms");
    Figure releasing("removeTap() and stop() hold the main thread, ms");
    Figure lostAtEnd("speech lost at the end (negative: some more), ms");
    int gaps = 0;
    PulseAudioInput input(connection);
    for (int run = 0; run < runs; ++run) {
        Ear ear;
        const auto saidAtStart = voice.framesSaid();
        const auto start = Clock::now();
        input.installTap(64, input.inputFormat(), ear.tap());
        input.start();
        starting.add(milliseconds(Clock::now() - start));
        ear.waitForFrames(rate / 4 + static_cast<std::size_t>(run) * 97);
        const auto saidAtEnd = voice.framesSaid();
        const auto release = Clock::now();
        input.removeTap();
        input.stop();
        releasing.add(milliseconds(Clock::now() - release));

        const auto heard = ear.heard();
        if (heard.samples.empty()) {
            std::puts("nothing heard");
            return false;
        }
        gaps += Voice::gapsIn(heard.samples);
        firstSample.add(milliseconds(heard.firstAt - start));
        lostAtStart.add(
            milliseconds(Voice::frameOf(Voice::firstOf(heard.samples), saidAtStart) - saidAtStart));
        lostAtEnd.add(milliseconds(saidAtEnd - Voice::frameOf(heard.samples.back(), saidAtEnd)));
    }
    for (auto* const figure : {&starting, &firstSample, &lostAtStart, &releasing, &lostAtEnd})
        figure->print();
    std::printf("gaps: %d in %d recordings\n", gaps, runs);
    return gaps == 0;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::string_view servers = argc > 1 ? argv[1] : "both";
    const int runs = std::max(argc > 2 ? std::atoi(argv[2]) : 30, 1);
    bool whole = true;
    if (servers != "pipewire") {
        std::puts("PulseAudio");
        whole = measure(SoundServer::Kind::PulseAudio, runs);
    }
    if (servers != "pulse") {
        std::puts("PipeWire");
        whole = measure(SoundServer::Kind::PipeWire, runs) && whole;
    }
    return whole ? 0 : 1;
}
