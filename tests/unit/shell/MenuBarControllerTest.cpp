// SPDX-License-Identifier: MIT
#include "shell/MenuBarController.h"

#include "InMemoryPreferenceStore.h"
#include "SimulatedMainActor.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using State = MenuBarController::State;

namespace {

class MenuBar : public testing::Test {
protected:
    ~MenuBar() override { EXPECT_TRUE(actor.runToRest(seconds(3600))); }

    SimulatedMainActor actor;
    InMemoryPreferenceStore store;
    AppSettings settings{store};
    MenuBarController menuBar{actor, settings};
};

TEST_F(MenuBar, indicators_mirrorTheSettingsFromTheStart) {
    settings.targetLanguageCode.set("de");
    settings.aiCleanupEnabled.set(true);
    const MenuBarController later(actor, settings);
    EXPECT_TRUE(later.translateIndicator.get());
    EXPECT_TRUE(later.aiCleanupIndicator.get());
    EXPECT_FALSE(menuBar.translateIndicator.get()); // its turn has not come yet
    actor.settle();
    EXPECT_TRUE(menuBar.translateIndicator.get());
    EXPECT_TRUE(menuBar.aiCleanupIndicator.get());
    settings.targetLanguageCode.set("off");
    actor.settle();
    EXPECT_FALSE(menuBar.translateIndicator.get());
}

TEST_F(MenuBar, statusIcon_tellsTheState) {
    actor.settle();
    EXPECT_EQ(menuBar.statusIconName(), "waveform.badge.microphone");
    menuBar.state.set(State::Recording);
    EXPECT_EQ(menuBar.statusIconName(), "mic.fill");
    menuBar.state.set(State::Transcribing);
    EXPECT_EQ(menuBar.statusIconName(), "waveform");
    menuBar.state.set(State::Error);
    EXPECT_EQ(menuBar.statusIconName(), "exclamationmark.triangle");
}

TEST_F(MenuBar, statusIconWhileTranslationIsOn_tellsSoOnlyAtRest) {
    settings.targetLanguageCode.set("en");
    actor.settle();
    EXPECT_EQ(menuBar.statusIconName(), "translate");
    menuBar.state.set(State::Recording);
    EXPECT_EQ(menuBar.statusIconName(), "mic.fill");
}

TEST_F(MenuBar, translationAndCleanupBothOn_idleIconIsTheCleanups) {
    settings.targetLanguageCode.set("en");
    settings.aiCleanupEnabled.set(true);
    actor.settle();
    EXPECT_EQ(menuBar.statusIconName(), "wand.and.sparkles");
}

TEST_F(MenuBar, error_isShownForItsTimeAndThenForgotten) {
    menuBar.showError("Transcription failed", seconds(4));
    EXPECT_EQ(menuBar.state.get(), State::Error);
    EXPECT_EQ(menuBar.lastErrorMessage.get(), "Transcription failed");
    actor.advance(seconds(3.999));
    EXPECT_EQ(menuBar.state.get(), State::Error);
    actor.advance(seconds(0.001));
    EXPECT_EQ(menuBar.state.get(), State::Idle);
    EXPECT_EQ(menuBar.lastErrorMessage.get(), std::nullopt);
}

TEST_F(MenuBar, secondErrorDuringTheFirst_endsWithTheFirst) {
    menuBar.showError("first", seconds(4));
    actor.advance(seconds(3));
    menuBar.showError("second", seconds(4));
    EXPECT_EQ(menuBar.lastErrorMessage.get(), "second");
    actor.advance(seconds(1));
    EXPECT_EQ(menuBar.state.get(), State::Idle);
    EXPECT_EQ(menuBar.lastErrorMessage.get(), std::nullopt);
}

TEST_F(MenuBar, errorFollowedByARecording_theTimerLeavesTheRecordingAlone) {
    menuBar.showError("error", seconds(4));
    actor.advance(seconds(1));
    menuBar.state.set(State::Recording);
    actor.advance(seconds(10));
    EXPECT_EQ(menuBar.state.get(), State::Recording);
    EXPECT_EQ(menuBar.lastErrorMessage.get(), "error");
}

TEST(MenuBarLifetime, controllerGoneBeforeTheErrorEnds_theTaskEndsWithoutEffect) {
    SimulatedMainActor actor;
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    {
        MenuBarController menuBar(actor, settings);
        menuBar.showError("error", seconds(4));
        actor.settle();
    }
    EXPECT_TRUE(actor.runToRest(seconds(10)));
}

} // namespace
