// SPDX-License-Identifier: MIT
#pragma once

#include "Dice.h"
#include "Judge.h"
#include "SimulatedWorld.h"
#include "TwoColumns.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace talvera::simulation {

/// The applications that run on the simulated desktop.
namespace desktop {
inline const RunningApplication editor{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
inline const RunningApplication mail{200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")};
inline const RunningApplication nameless{300, std::nullopt, std::nullopt};
inline const RunningApplication ourselves{400, QStringLiteral("talvera"), QStringLiteral("Talvera")};
} // namespace desktop

/// One agent's life on a machine on which things go wrong: presses of the hotkey at every moment, and faults
/// of everything around it, all from one seed.
class Simulation {
public:
    explicit Simulation(std::uint64_t seed);

    /// Lives through it; stops early when something was wrong.
    void run();

    const std::optional<QString>& violation() const { return m_judge.violation(); }
    const Tally& tally() const { return m_judge.tally(); }
    /// What the simulation did since the last rest and what followed, in the two columns of a story.
    QStringList account() const;

private:
    void chooseSettings();
    void playRound();
    void scheduleHolds();
    void scheduleTaps();
    void scheduleDisturbances();
    void breakSomething();
    void disturb();
    void writeToolScript();
    test::ToolRun makeToolRun();
    void chooseAudio();
    void mendEverything();
    void bringToRest();

    HotkeyBinding randomBinding();
    void keyDown();
    void keyUp();
    void letGo();

    void after(double delay, const char* what, std::function<void()> act);
    void did(const QString& what);

    Dice m_dice;
    test::SimulatedWorld m_world;
    Judge m_judge;
    std::optional<HotkeyBinding> m_heldBinding;
    int m_texts = 0;
    std::vector<TwoColumns::Entry> m_done; ///< since the last rest
};

} // namespace talvera::simulation
