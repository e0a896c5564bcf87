// SPDX-License-Identifier: MIT
// settings_costs [TIMES]: how soon the settings are painted, and how much of the agent's memory is left when
// they have closed, with every section seen.
#include "RigInput.h"
#include "X11Windows.h"
#include "keys.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PaintWitness.h"
#include "support/ProcessTree.h"

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

constexpr QSize leastSettings{500, 350};
constexpr auto patience = 60s;

class Settings {
public:
    explicit Settings(pid_t agent)
        : m_agent(agent) {}

    /// Answers how long they take to their first paint.
    Clock::duration open() {
        m_paint.forget();
        const auto told = Clock::now();
        tell(QStringLiteral("--settings"));
        return m_paint.awaitOf(m_agent) - told;
    }
    void showEverySection() {
        for (const auto* section : {"hotkey", "language", "ai", "privacy", "general"}) {
            tell(QStringLiteral("--settings ") + QString::fromLatin1(section));
            std::this_thread::sleep_for(300ms);
        }
    }
    void close() {
        await(true);
        m_keys.tap(test::Key::escape);
        await(false);
    }

private:
    void tell(const QString& purpose) {
        if (!m_second.tellHolder(purpose))
            throw std::runtime_error("the agent doesn't listen");
    }
    void await(bool shown) {
        const auto deadline = Clock::now() + patience;
        for (;;) {
            const auto frame = m_windows.viewable("talvera", leastSettings);
            if (shown ? frame && m_windows.hasKeyboard(*frame) : !frame)
                return;
            if (Clock::now() > deadline)
                throw std::runtime_error(shown ? "the settings don't come" : "the settings don't go");
            std::this_thread::sleep_for(20ms);
        }
    }

    const pid_t m_agent;
    X11DisplayClaim m_second{X11Server()};
    test::RigInput m_keys;
    test::X11Windows m_windows;
    PaintWitness m_paint;
};

void measure(int times) {
    test::AgentHome home;
    home.setPreferences({});
    test::AgentProcess agent(home);
    agent.awaitRest();
    const ProcessTree tree(agent.pid());
    // Without the recogniser that stands ready now and then, which no window has to do with.
    const double before = tree.megabytesOfRoot();
    const double ownBefore = tree.ownMegabytesOfRoot();

    Settings settings(agent.pid());
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
