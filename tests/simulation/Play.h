// SPDX-License-Identifier: MIT
#pragma once

#include "Faults.h"
#include "SimulatedWorld.h"
#include "Stage.h"
#include "TwoColumns.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace talvera::simulation {

/// Agents that live one after another on one simulated machine, to which things are done in words: those of
/// the Stage, and "the program is killed and started again". The user has finished the wizard.
class Play {
public:
    explicit Play(FaultLog& faults);

    /// What holds from the beginning; before the launch.
    void give(const QString& words) { m_stage->perform(words); }
    void launch();

    /// Does these things at their times, those of one time in their order, and lets time pass until `end`.
    void perform(std::vector<TwoColumns::Entry> things, double end);

    test::SimulatedWorld& world() { return *m_world; }
    Stage& stage() { return *m_stage; }
    double elapsed() const { return m_world->actor.elapsed(); }
    /// The first words that meant nothing.
    std::optional<QString> mistake() const;

    /// What followed, all lives in one, and since it was last forgotten.
    std::vector<TwoColumns::Entry> followed(bool withTraces) const;
    void forget();

    /// Called with each agent that has been launched, before it does anything.
    std::function<void(test::SimulatedWorld&)> onLaunch;
    /// Called before an agent is killed.
    std::function<void()> onDeath;
    /// Called when the next one has been launched.
    std::function<void(test::SimulatedWorld& dead)> onReturn;

private:
    void kill();
    void noteDeath();

    FaultLog& m_faults;
    std::vector<test::Effect> m_ofTheDead;
    std::optional<QString> m_mistake;
    std::unique_ptr<Stage> m_stage;
    std::unique_ptr<test::SimulatedWorld> m_world; // goes before the stage: it lets what is under way end
};

} // namespace talvera::simulation
