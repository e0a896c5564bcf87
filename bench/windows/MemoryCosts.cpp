// SPDX-License-Identifier: MIT
// memory_costs [OPENINGS [DICTATIONS]]: the memory of the agent with every process of its own, once
// HUD and panel have been shown and are closed again, and whether it grows when that happens again and again;
// and what every window together leaves behind in the agent: HUD, panel, settings and wizard.
#include "RigInput.h"
#include "keys.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/KeyWindow.h"
#include "support/PaintWitness.h"
#include "support/PrivateProgram.h"
#include "support/ProcessTree.h"
#include "windows/SettingsVisit.h"
#include "windows/WizardVisit.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::bench;
using namespace std::chrono_literals;

namespace {

constexpr XKeycode escape = test::Key::escape;

/// The panel fades in or out, and the agent frees what it needs no longer.
constexpr auto settling = 400ms;

/// A closed window's memory is given back after a while.
constexpr auto givingBack = 2s;

constexpr auto withoutAWord = 1500ms;

class Panel {
public:
    void openAndClose() {
        m_paint.forget();
        if (!m_second.tellHolder({}))
            throw std::runtime_error("the agent doesn't listen");
        m_paint.await();
        std::this_thread::sleep_for(settling);
        m_keys.tap(escape);
        std::this_thread::sleep_for(settling);
    }

private:
    X11DisplayClaim m_second{X11Server()};
    test::RigInput m_keys;
    PaintWitness m_paint;
};

void measureEveryWindow() {
    ModelHome home;
    home.home.setPreferences({});
    test::AgentProcess agent(home.home);
    agent.awaitRest();
    const ProcessTree tree(agent.pid());
    const double before = tree.megabytesOfRoot();
    const double ownBefore = tree.ownMegabytesOfRoot();
    const auto print = [&](const std::string& after) {
        std::this_thread::sleep_for(givingBack);
        agent.awaitRest();
        printFigure("memory (PSS) after " + after + " beyond that before", tree.megabytesOfRoot() - before,
                    "MB", Aim::atMost(5));
        printFigure("  of it in no file", tree.ownMegabytesOfRoot() - ownBefore, "MB");
    };

    test::RigInput keys;
    keys.press(Dictating::hotkey); // without a word, but long enough to be more than a slip
    agent.await("hud listening");
    std::this_thread::sleep_for(withoutAWord);
    keys.release(Dictating::hotkey);
    agent.await("hud hidden");
    Panel().openAndClose();
    print("HUD and panel");
    SettingsVisit settings(agent.pid());
    settings.open();
    settings.showEverySection();
    settings.close();
    print("these and every section of the settings");
    WizardVisit wizard(agent.pid());
    home.removeModel();
    wizard.open();
    home.awaitModel();
    wizard.close();
    print("every window");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int openings = argc > 1 ? std::max(std::atoi(argv[1]), 2) : 30;
    const int dictations = argc > 2 ? std::max(std::atoi(argv[2]), 2) : 10;
    try {
        measureEveryWindow();
        KeyWindow window;
        const PrivateProgram program(QStringLiteral("Good morning."));
        Dictating dictating({{"typewriterThresholdSeconds", 15.0}}, program.program());
        const ProcessTree tree(dictating.agent());
        const auto word = test::spoken(QStringLiteral("Good morning."));
        Panel panel;
        const auto print = [&tree](const std::string& when) {
            std::this_thread::sleep_for(2s);
            printFigure("memory (PSS) " + when, tree.megabytes(), "MB", Aim::below(60));
            printFigure("  of it in no file", tree.ownMegabytes(), "MB");
        };

        print("after the launch");
        dictating.holdAndSay(word);
        dictating.awaitEnd();
        panel.openAndClose();
        print("with everything shown and closed once");
        for (int opening = 1; opening < openings / 2; ++opening)
            panel.openAndClose();
        print("after the panel has been open " + std::to_string(openings / 2) + " times");
        for (int opening = openings / 2; opening < openings; ++opening)
            panel.openAndClose();
        print("after the panel has been open " + std::to_string(openings) + " times");
        for (int dictation = 1; dictation < dictations; ++dictation) {
            dictating.holdAndSay(word);
            dictating.awaitEnd();
        }
        print("after " + std::to_string(dictations) + " dictations");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "memory_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
