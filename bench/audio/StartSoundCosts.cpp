// SPDX-License-Identifier: MIT
// start_sound_costs [runs]: whether the sound that tells the user to speak delays what is recorded: the time
// from the start of a recording to its first sample, without the sound and with it, by turns, on both kinds
// of sound server.
#include "Ear.h"
#include "SoundServer.h"
#include "concurrency/QtMainActor.h"
#include "linux/audio/SndFileReader.h"
#include "linux/pulse/PulseAudioInput.h"
#include "linux/pulse/PulseSoundPlayer.h"
#include "support/Figure.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <string>

using namespace talvera;
using namespace talvera::bench;
using namespace talvera::test;

namespace {

void measure(SoundServer::Kind kind, const std::string& name, int runs) {
    SoundServer server(kind);
    server.start();
    server.addMicrophone();
    QtMainActor actor;
    PulseConnection connection(actor, server.address());
    connection.waitForAnswer(std::chrono::seconds(5));
    SndFileReader files;
    PulseSoundPlayer player(connection, files, QStringLiteral(TALVERA_START_SOUNDS));
    PulseAudioInput input(connection);

    Figure silent(name + ": start() to the first sample, without a sound");
    Figure sounding(name + ": start() to the first sample, with the sound");
    Figure playing(name + ": playing holds the main thread");
    for (int run = 0; run < 2 * runs; ++run) {
        const bool withSound = run % 2 != 0;
        Ear ear;
        const auto start = Clock::now();
        input.installTap(64, input.inputFormat(), ear.tap());
        input.start();
        if (withSound) {
            const auto before = Clock::now();
            player.play(QStringLiteral("Submarine"));
            playing.add(milliseconds(Clock::now() - before));
        }
        ear.waitForFrames(12'000);
        (withSound ? sounding : silent).add(milliseconds(ear.heard().firstAt - start));
        input.removeTap();
        input.stop();
    }
    silent.print();
    sounding.print(Aim::below(silent.median() + 10));
    playing.print(Aim::below(5));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int runs = std::max(argc > 1 ? std::atoi(argv[1]) : 20, 1);
    measure(SoundServer::Kind::PulseAudio, "PulseAudio", runs);
    measure(SoundServer::Kind::PipeWire, "PipeWire", runs);
}
