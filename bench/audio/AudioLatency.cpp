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
#include "linux/pulse/PulseAudioInput.h"
#include "support/Figure.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace talvera;
using namespace talvera::bench;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

constexpr int rate = 48000;

double millisecondsOf(std::int64_t frames) {
    return 1000.0 * static_cast<double>(frames) / rate;
}

bool measure(SoundServer::Kind kind, const std::string& name, int runs) {
    SoundServer server(kind);
    server.start();
    server.addMicrophone(QStringLiteral("microphone"), rate);
    Voice voice(server.address(), server.feedOf(), rate);
    voice.count();
    QtMainActor actor;
    PulseConnection connection(actor, server.address());
    connection.waitForAnswer(5s);

    Figure starting(name + ": start() holds the main thread");
    Figure firstSample(name + ": start() to the first sample in our hands");
    Figure lostAtStart(name + ": speech lost at the beginning");
    Figure releasing(name + ": removeTap() and stop() hold the main thread");
    Figure lostAtEnd(name + ": speech lost at the end (negative: some more)");
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
            millisecondsOf(Voice::frameOf(Voice::firstOf(heard.samples), saidAtStart) - saidAtStart));
        lostAtEnd.add(millisecondsOf(saidAtEnd - Voice::frameOf(heard.samples.back(), saidAtEnd)));
    }
    starting.print();
    firstSample.print(Aim::below(40));
    lostAtStart.print();
    releasing.print();
    lostAtEnd.print();
    printFigure(name + ": gaps in " + std::to_string(runs) + " recordings", gaps, "", Aim::atMost(0));
    return gaps == 0;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::string_view servers = argc > 1 ? argv[1] : "both";
    const int runs = std::max(argc > 2 ? std::atoi(argv[2]) : 30, 1);
    bool whole = true;
    if (servers != "pipewire") {
        whole = measure(SoundServer::Kind::PulseAudio, "PulseAudio", runs);
    }
    if (servers != "pulse") {
        whole = measure(SoundServer::Kind::PipeWire, "PipeWire", runs) && whole;
    }
    return whole ? 0 : 1;
}
