// SPDX-License-Identifier: MIT
// passed_key [KEYS]: how long a key takes from the keyboard to the focused window, with the agent and without
// it, in turns. The hotkey itself too: a modifier alone is seen by the agent and passed on.
#include "RigInput.h"
#include "keys.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/KeyWindow.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

using namespace talvera;
using namespace talvera::bench;

namespace {

constexpr XKeycode letterA = test::Key::a;
constexpr int rounds = 4;

void tap(XKeycode key, int times, test::RigInput& hands, KeyWindow& window, Figure& figure) {
    for (int i = 0; i < times; ++i) {
        const auto start = Clock::now();
        hands.press(key);
        figure.add(milliseconds(window.awaitKeyDown() - start));
        hands.release(key);
    }
}

struct Trip {
    std::string name;
    XKeycode key;
    Figure with{"a key to the window: " + name + ", with the agent"};
    Figure without{"a key to the window: " + name + ", without it"};
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int times = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 100;
    try {
        test::RigInput hands;
        KeyWindow window;
        Trip trips[] = {{"a letter", letterA}, {"the hotkey", Dictating::hotkey}};
        for (int round = 0; round < rounds; ++round) {
            {
                const Dictating agent({});
                for (auto& trip : trips)
                    tap(trip.key, times, hands, window, trip.with);
            }
            for (auto& trip : trips)
                tap(trip.key, times, hands, window, trip.without);
        }
        for (const auto& trip : trips) {
            trip.with.print();
            trip.without.print();
            printFigure("  difference of the medians", trip.with.median() - trip.without.median(), "ms");
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "passed_key: %s\n", error.what());
        return 1;
    }
    return 0;
}
