// SPDX-License-Identifier: MIT
#pragma once

#include "PrintQt.h"
#include "SimulatedWorld.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/hud/DictationHUDState.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// The agent, launched on a machine on which everything works and by a user who has finished the wizard.
class CoreTest : public testing::Test {
protected:
    using State = MenuBarController::State;
    using HUD = DictationHUDState;

    CoreTest() { world.settings.hasOnboarded.set(true); }

    ~CoreTest() override {
        // Every test ends at rest: nothing ticks on, and nothing hangs.
        if (launched) {
            EXPECT_TRUE(world.runToRest());
        }
    }

    void launch() {
        world.launch();
        launched = true;
        world.effects.clear();
    }
    void useTapMode() { world.settings.hotkeyTapToToggle.set(true); }

    void press() { world.pressStart(); }
    void release() { world.pressEnd(); }
    void advance(double duration) { world.actor.advance(seconds(duration)); }
    void runToRest() { EXPECT_TRUE(world.runToRest()); }

    /// Holds the key for that long.
    void hold(double duration) {
        press();
        advance(duration);
        release();
        world.actor.settle();
    }
    /// A whole dictation in hold mode, to the end of everything.
    void dictate() {
        hold(2.0);
        runToRest();
    }
    void hear(double audioSeconds) { world.microphone.secondsPerRecording = audioSeconds; }
    void recognise(std::vector<ToolRun> runs) { world.tool.setRuns(std::move(runs)); }
    static ToolRun text(const char* text, double duration = 1.0) {
        ToolRun run;
        run.text = text;
        run.duration = seconds(duration);
        return run;
    }
    static ToolRun failure(int status = 1) {
        ToolRun run;
        run.status = status;
        run.standardError = "broken";
        return run;
    }

    State state() { return world.agent().menuBar.state.get(); }
    HUD hud() { return world.agent().hud.currentState(); }
    const DictationController& dictation() { return world.agent().delegate().dictation(); }
    QStringList story(const QStringList& kinds) const { return world.story(kinds); }

    SimulatedWorld world;
    bool launched = false;
};

} // namespace talvera::test
