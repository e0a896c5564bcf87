// SPDX-License-Identifier: MIT
// panel_opening [TIMES]: how soon the status panel is painted when the program is started a second time. What
// the second process takes to come up doesn't count: the first is told in the same way by us.
#include "RigInput.h"
#include "keys.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PaintWitness.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace talvera;
using namespace talvera::bench;

namespace {

constexpr XKeycode escape = test::Key::escape;

/// The panel closes, and the agent does what it does then.
constexpr std::chrono::milliseconds settling{1000};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int times = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 15;
    try {
        const Dictating agent({});
        X11DisplayClaim second{X11Server()};
        test::RigInput keys;
        PaintWitness paint;
        Figure first("the panel: told to open to the first paint, the first time");
        Figure later("the panel: told to open to the first paint");
        for (int time = 0; time <= times; ++time) {
            std::this_thread::sleep_for(settling);
            paint.forget();
            const auto told = Clock::now();
            if (!second.tellHolder({}))
                throw std::runtime_error("the agent doesn't listen");
            (time == 0 ? first : later).add(milliseconds(paint.await() - told));
            std::this_thread::sleep_for(settling);
            keys.tap(escape);
        }
        first.print(Aim::below(100));
        later.print(Aim::below(100));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "panel_opening: %s\n", error.what());
        return 1;
    }
    return 0;
}
