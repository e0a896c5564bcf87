// SPDX-License-Identifier: MIT
// launch_to_tap [LAUNCHES]: how long after its start the program hears the hotkey. It says so itself, with
// the line that it prints when the event tap is installed; that the tap hears is tried at the end.
#include "support/Dictating.h"
#include "support/Figure.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>
#include <cstdlib>

using namespace talvera;
using namespace talvera::bench;

namespace {

constexpr int patience = 20'000; // ms

/// Starts the program, waits for its tap and ends it again.
double launch(const QProcessEnvironment& environment) {
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const auto start = Clock::now();
    program.start(QStringLiteral(TALVERA_PROGRAM), QStringList());
    for (;;) {
        while (!program.canReadLine()) {
            if (!program.waitForReadyRead(patience))
                throw std::runtime_error("the program doesn't come up");
        }
        if (program.readLine().startsWith("[app] applicationDidFinishLaunching"))
            break;
    }
    const auto time = Clock::now() - start;
    program.terminate();
    program.waitForFinished(patience);
    return milliseconds(time);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int launches = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 15;
    try {
        test::AgentHome home;
        home.setPreferences({});
        const auto environment = home.environment();
        launch(environment); // from the disk
        Figure figure("launch of the program to the event tap");
        for (int i = 0; i < launches; ++i)
            figure.add(launch(environment));
        figure.print(Aim::below(250));
        Dictating({}).holdAndSay({});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "launch_to_tap: %s\n", error.what());
        return 1;
    }
    return 0;
}
