// SPDX-License-Identifier: MIT
// wizard_costs [TIMES]: how soon the wizard is painted, what the agent costs while it stands there, and how
// much of its memory is left when it has closed.
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PaintWitness.h"
#include "support/ProcessTree.h"
#include "windows/WizardVisit.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

using namespace talvera;
using namespace talvera::bench;
using namespace std::chrono_literals;

namespace {

constexpr auto watched = 4s;

/// What part of one processor the agent takes from now on.
double processorShare(const ProcessTree& tree) {
    const auto before = tree.used();
    const auto start = Clock::now();
    std::this_thread::sleep_for(watched);
    return 100 * (milliseconds(tree.used() - before) / milliseconds(Clock::now() - start));
}

/// From the start of a program that has never run to the first paint of its wizard.
double firstStart() {
    ModelHome home;
    home.removeModel();
    home.home.setPreferences({{"hasOnboarded", false}});
    PaintWitness paint;
    const auto start = Clock::now();
    const test::AgentProcess agent(home.home);
    return milliseconds(paint.awaitOf(agent.pid()) - start);
}

void measure(int times) {
    ModelHome home;
    home.home.setPreferences({});
    test::AgentProcess agent(home.home);
    agent.awaitRest();
    const ProcessTree tree(agent.pid());
    // Without the recogniser that stands ready now and then, which no window has to do with.
    const double before = tree.megabytesOfRoot();
    const double ownBefore = tree.ownMegabytesOfRoot();

    home.removeModel();
    WizardVisit wizard(agent.pid());
    Figure first("the wizard: told to open to the first paint, the first time");
    first.add(milliseconds(wizard.open()));
    first.print(Aim::below(200));
    home.awaitModel();
    std::this_thread::sleep_for(2s); // the recogniser is warmed up
    printFigure("while the wizard welcomes the user: one core", processorShare(tree), "%");
    wizard.close();
    agent.awaitRest();
    printFigure("memory (PSS) after the wizard beyond that before", tree.megabytesOfRoot() - before, "MB",
                Aim::atMost(5));
    printFigure("  of it in no file", tree.ownMegabytesOfRoot() - ownBefore, "MB");

    Figure later("the wizard: told to open to the first paint");
    for (int time = 0; time < times; ++time) {
        home.removeModel();
        later.add(milliseconds(wizard.open()));
        home.awaitModel();
        wizard.close();
    }
    later.print(Aim::below(200));
    agent.awaitRest();
    printFigure("memory (PSS) after " + std::to_string(times) + " more wizards beyond that before the first",
                tree.megabytesOfRoot() - before, "MB");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int times = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 10;
    try {
        firstStart(); // from the disk
        Figure start("the first start of all: launch of the program to the wizard's first paint");
        for (int i = 0; i < times; ++i)
            start.add(firstStart());
        start.print();
        measure(times);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "wizard_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
