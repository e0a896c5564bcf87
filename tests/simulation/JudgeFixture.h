// SPDX-License-Identifier: MIT
#pragma once

#include "PrintQt.h"
#include "Trial.h"
#include "core/Agent.h"
#include "shell/MenuBarController.h"
#include "shortest.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace talvera::simulation {

/// A world that is not as a world should be, in one way, and the judge who has to notice.
class JudgeFixture : public testing::Test {
protected:
    using State = MenuBarController::State;

    test::SimulatedWorld& world() { return trial.play().world(); }

    /// `things` as the left column of a story has them, and then the rest.
    QString verdict(const QStringList& things) {
        play(things, 60);
        if (const auto mistake = trial.play().mistake())
            return *mistake;
        if (!trial.violation())
            trial.rest();
        return kind();
    }

    /// The same, but at `end`, in the middle of it all, as if it were the rest.
    QString verdictAt(double end, const QStringList& things) {
        play(things, end);
        if (!trial.violation())
            trial.judge().judgeRest();
        return kind();
    }

    /// Does it so many seconds after the launch, unless the program comes to it before.
    void at(double time, std::function<void()> deed) {
        world().actor.startOutside(seconds(time), std::move(deed));
    }

    /// An effect that nothing has had.
    void forge(std::string effect, nlohmann::ordered_json fields) {
        world().onEffect({world().actor.elapsed(), std::move(effect), std::move(fields)});
    }

    /// The judge hears of no effects of this kind.
    void hide(const std::string& kind) {
        world().onEffect = [kind, judge = world().onEffect](const test::Effect& effect) {
            if (effect.effect != kind)
                judge(effect);
        };
    }

    void setMenu(State state) { world().agent().menuBar.state.set(state); }

    const QStringList dictation{QStringLiteral("0 the hotkey goes down"),
                                QStringLiteral("2 the hotkey comes up")};
    /// The text comes two seconds after the release.
    const QStringList slowDictation =
        QStringList{QStringLiteral("0 first it hears \"words\" within 2 s")} + dictation;

    /// Sets a timer again and again, as long as it `ticks`.
    void tick() {
        if (ticks)
            world().actor.startTimer(seconds(10), [this] { tick(); });
    }
    bool ticks = true;

    /// What is wrong with the world, done to it when the agent is there.
    std::function<void()> sabotage;
    Trial trial;

private:
    void play(const QStringList& things, double end) {
        trial.launch();
        if (sabotage)
            sabotage();
        std::vector<TwoColumns::Entry> done;
        for (const auto& thing : things)
            done.push_back({thing.section(u' ', 0, 0).toDouble(), thing.section(u' ', 1)});
        trial.perform(done, end);
    }

    QString kind() const { return kindOf(trial.violation().value_or(QStringLiteral("nothing"))); }
};

} // namespace talvera::simulation
