// SPDX-License-Identifier: MIT
// settings_costs [TIMES]: how soon the settings are painted, and how much of the agent's memory is left when
// they have closed, with every section seen.
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/ProcessTree.h"
#include "windows/SettingsVisit.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

using namespace talvera;
using namespace talvera::bench;

namespace {

void measure(int times) {
    test::AgentHome home;
    home.setPreferences({});
    test::AgentProcess agent(home);
    agent.awaitRest();
    const ProcessTree tree(agent.pid());
    // Without the recogniser that stands ready now and then, which no window has to do with.
    const double before = tree.megabytesOfRoot();
    const double ownBefore = tree.ownMegabytesOfRoot();

    SettingsVisit settings(agent.pid());
    Figure first("the settings: told to open to the first paint, the first time");
    first.add(milliseconds(settings.open()));
    first.print(Aim::below(150));
    settings.showEverySection();
    settings.close();
    agent.awaitRest();
    printFigure("memory (PSS) after the settings beyond that before", tree.megabytesOfRoot() - before, "MB",
                Aim::atMost(5));
    printFigure("  of it in no file", tree.ownMegabytesOfRoot() - ownBefore, "MB");

    Figure later("the settings: told to open to the first paint");
    for (int time = 0; time < times; ++time) {
        later.add(milliseconds(settings.open()));
        settings.close();
    }
    later.print(Aim::below(150));
    agent.awaitRest();
    printFigure("memory (PSS) after " + std::to_string(times) + " more times beyond that before the first",
                tree.megabytesOfRoot() - before, "MB");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int times = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 10;
    try {
        measure(times);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "settings_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
