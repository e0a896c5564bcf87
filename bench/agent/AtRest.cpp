// SPDX-License-Identifier: MIT
// at_rest [SECONDS]: what the agent, with every process of its own, costs while nobody dictates: at first
// after its launch, and then after it has dictated.
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/KeyWindow.h"
#include "support/ProcessTree.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::bench;

namespace {

void watch(const ProcessTree& tree, const std::string& when, std::chrono::seconds length) {
    tree.awaitRest();
    const auto before = tree.threads();
    std::this_thread::sleep_for(length);
    const auto after = tree.threads();

    std::int64_t switches = 0;
    std::chrono::nanoseconds used{};
    std::string woken;
    for (const auto& [id, thread] : after) {
        const auto known = before.find(id);
        const auto start = known == before.end() ? ProcessTree::Thread() : known->second;
        switches += thread.switches - start.switches;
        used += thread.used - start.used;
        if (thread.switches != start.switches)
            woken += " " + thread.name + " " + std::to_string(thread.switches - start.switches);
    }
    const double seconds = std::chrono::duration<double>(length).count();
    printFigure(when + ": wake-ups and context switches", static_cast<double>(switches) / seconds, "/s",
                Aim::atMost(0));
    printFigure(when + ": processor time", milliseconds(used) / seconds, "ms/s");
    printFigure(when + ": memory (PSS), " + std::to_string(tree.processes().size()) + " processes",
                tree.megabytes(), "MB", Aim::below(60));
    printFigure(when + ":   of it in no file", tree.ownMegabytes(), "MB");
    if (!woken.empty())
        printNote("woken in " + std::to_string(length.count()) + " s:" + woken);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto length = std::chrono::seconds(argc > 1 ? std::max(std::atoi(argv[1]), 1) : 30);
    try {
        KeyWindow window;
        Dictating dictating({});
        const ProcessTree tree(dictating.agent());
        watch(tree, "at rest after the launch", length);
        dictating.holdAndSay(test::spoken(QStringLiteral("Please send the report tomorrow.")));
        dictating.awaitEnd();
        watch(tree, "at rest after a dictation", length);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "at_rest: %s\n", error.what());
        return 1;
    }
    return 0;
}
