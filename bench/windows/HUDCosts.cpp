// SPDX-License-Identifier: MIT
// hud_costs [DICTATIONS]: how soon the HUD is painted when a recording begins, and what the agent costs while
// somebody speaks and the meter moves.
#include "receivers/Receiver.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PaintWitness.h"
#include "support/PrivateProgram.h"
#include "support/ProcessTree.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace talvera;
using namespace talvera::bench;

namespace {

constexpr double frame = 1000.0 / 60;

void measurePaint(Dictating& dictating, int dictations) {
    const auto word = test::spoken(QStringLiteral("Good morning."));
    PaintWitness paint;
    Figure figure("the HUD: show to the first paint");
    for (int dictation = 0; dictation <= dictations; ++dictation) {
        paint.forget();
        const auto shown = dictating.hold();
        const auto painted = paint.await();
        if (dictation > 0) // the first time it is laid out, too
            figure.add(std::max(0.0, milliseconds(painted - shown)));
        dictating.say(word);
        dictating.release();
        dictating.awaitEnd();
    }
    figure.print(Aim::atMost(frame));
}

/// Speech is recorded and measured meanwhile, and all of that counts.
void measureMeter(Dictating& dictating) {
    const auto sentence = test::spoken(QStringLiteral("Please send the report tomorrow."));
    const auto speech = test::joined({sentence, sentence, sentence, sentence}, 0.1);
    const ProcessTree tree(dictating.agent());
    dictating.hold();
    const auto before = tree.used();
    const auto start = Clock::now();
    dictating.say(speech);
    const auto used = tree.used() - before;
    const auto time = Clock::now() - start;
    dictating.release();
    dictating.awaitEnd();
    printFigure("while somebody speaks and the meter moves: one core",
                100 * (milliseconds(used) / milliseconds(time)), "%", Aim::below(3));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int dictations = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 15;
    try {
        const test::Receiver editor(test::Receiver::Kind::Gtk);
        const PrivateProgram program(QStringLiteral("Good morning."));
        Dictating dictating({{"typewriterThresholdSeconds", 15.0}}, program.program());
        measureMeter(dictating);
        measurePaint(dictating, dictations);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hud_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
