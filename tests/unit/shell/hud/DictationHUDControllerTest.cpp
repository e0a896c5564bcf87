// SPDX-License-Identifier: MIT
#include "shell/hud/DictationHUDController.h"

#include "SimulatedHUDPanel.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace talvera;
using namespace talvera::test;
using State = DictationHUDState;
using Tone = State::NoticeTone;
using Kind = State::PermissionKind;

namespace {

class HUD : public testing::Test {
protected:
    ~HUD() override { EXPECT_TRUE(actor.runToRest(seconds(3600))); }

    State state() { return hud.currentState(); }
    bool visible() const { return panel && panel->isVisible(); }

    SimulatedMainActor actor;
    SimulatedHUDPanel* panel = nullptr;
    int panelsMade = 0;
    DictationHUDController hud{actor, [this] {
                                   ++panelsMade;
                                   auto made = std::make_unique<SimulatedHUDPanel>(actor);
                                   panel = made.get();
                                   return made;
                               }};
};

TEST_F(HUD, panel_isMadeOnceAtTheFirstTransitionThatNeedsIt) {
    hud.hide();
    EXPECT_EQ(panelsMade, 0);
    hud.update(State::Transcribing{});
    EXPECT_EQ(panelsMade, 1);
    hud.show(State::Listening{actor.date()});
    EXPECT_EQ(panelsMade, 1);
}

TEST_F(HUD, show_bringsThePanelUpWithTheLevelAtRest) {
    hud.setLevel(1);
    hud.show(State::Listening{actor.date()});
    EXPECT_EQ(state(), State::Listening{actor.date()});
    EXPECT_TRUE(visible());
    EXPECT_EQ(hud.stateHolder().level.get(), 0.0F);
    EXPECT_TRUE(panel->ignoresMouseEvents);
}

TEST_F(HUD, updateWithThePanelHidden_changesTheStateAndShowsNothing) {
    hud.update(State::Transcribing{});
    EXPECT_EQ(state(), State::Transcribing{});
    EXPECT_FALSE(visible());
}

TEST_F(HUD, update_keepsLevelAndPanel) {
    hud.show(State::Listening{actor.date()});
    hud.setLevel(1);
    hud.update(State::Translating{"German"});
    EXPECT_EQ(state(), State::Translating{"German"});
    EXPECT_FLOAT_EQ(hud.stateHolder().level.get(), 0.4F);
    EXPECT_EQ(panel->fadeIns, 1);
}

TEST_F(HUD, hideOfAVisiblePanel_hidesAtTheEndOfTheFade) {
    hud.show(State::Listening{actor.date()});
    hud.hide();
    actor.advance(seconds(0.17));
    EXPECT_EQ(state(), State::Listening{actor.date() - std::chrono::milliseconds(170)});
    actor.advance(seconds(0.01));
    EXPECT_EQ(state(), State::Hidden{});
    EXPECT_FALSE(visible());
}

TEST_F(HUD, hideOfAPanelThatIsNotVisible_hidesAtOnce) {
    hud.update(State::Transcribing{});
    hud.hide();
    EXPECT_EQ(state(), State::Hidden{});
}

TEST_F(HUD, showDuringAFadeOut_isClearedByTheEndOfThatFade) {
    hud.show(State::Listening{actor.date()});
    hud.hide();
    actor.advance(seconds(0.1));
    hud.show(State::Listening{actor.date()});
    actor.advance(seconds(0.1));
    EXPECT_EQ(state(), State::Hidden{});
    EXPECT_FALSE(visible());
}

TEST_F(HUD, noticeAfterAFade_isNotTakenAlongByIt) {
    hud.show(State::Listening{actor.date()});
    hud.hide();
    hud.showNoticeAfterFade("the text is elsewhere", Tone::Warn, seconds(6.0));
    actor.advance(seconds(0.18));
    const State notice = State::Notice{"the text is elsewhere", Tone::Warn};
    EXPECT_EQ(state(), notice);
    EXPECT_TRUE(visible());
    actor.advance(seconds(5.9));
    EXPECT_EQ(state(), notice);
    EXPECT_TRUE(visible());
}

TEST_F(HUD, noticeAfterAFadeWithoutOne_isShownAtOnce) {
    hud.show(State::Listening{actor.date()});
    hud.showNoticeAfterFade("x", Tone::Info, seconds(1.0));
    const State notice = State::Notice{"x", Tone::Info};
    EXPECT_EQ(state(), notice);
}

TEST_F(HUD, notice_hidesItselfWhenItsTimeIsOver) {
    hud.showNotice("Transcription failed", Tone::Warn, seconds(3));
    EXPECT_EQ(state(), (State::Notice{"Transcription failed", Tone::Warn}));
    EXPECT_TRUE(visible());
    EXPECT_TRUE(panel->ignoresMouseEvents);
    actor.advance(seconds(3));
    EXPECT_TRUE(state().as<State::Notice>());
    actor.advance(SimulatedHUDPanel::fade);
    EXPECT_EQ(state(), State::Hidden{});
}

TEST_F(HUD, noticeDuringANotice_runsItsOwnTimeInFull) {
    hud.showNotice("first", Tone::Warn, seconds(3));
    actor.advance(seconds(2));
    hud.showNotice("second", Tone::Info, seconds(3));
    actor.advance(seconds(2.9));
    EXPECT_EQ(state(), (State::Notice{"second", Tone::Info}));
    EXPECT_TRUE(visible());
    actor.advance(seconds(0.3));
    EXPECT_EQ(state(), State::Hidden{});
}

TEST_F(HUD, transitionDuringANotice_outrunsItsTime) {
    hud.showNotice("notice", Tone::Info, seconds(3));
    actor.advance(seconds(1));
    hud.show(State::Listening{actor.date()});
    actor.advance(seconds(10));
    EXPECT_TRUE(state().as<State::Listening>());
    EXPECT_TRUE(visible());
}

TEST_F(HUD, recordingEnded_thePanelLeavesAndTheStateStays) {
    hud.show(State::Listening{actor.date()});
    hud.recordingEnded();
    hud.recordingEnded();
    EXPECT_TRUE(visible());
    actor.advance(SimulatedHUDPanel::fade);
    EXPECT_FALSE(visible());
    EXPECT_TRUE(state().as<State::Listening>());
}

TEST_F(HUD, recordingEndedInAnyOtherState_changesNothing) {
    hud.show(State::Transcribing{});
    hud.recordingEnded();
    actor.advance(seconds(1));
    EXPECT_TRUE(visible());
}

TEST_F(HUD, nextRecordingWhileThePanelLeaves_keepsItOnScreen) {
    hud.show(State::Listening{actor.date()});
    hud.recordingEnded();
    actor.advance(seconds(0.1));
    hud.show(State::Listening{actor.date()});
    actor.advance(seconds(1));
    EXPECT_TRUE(visible());
    hud.recordingEnded();
    actor.advance(seconds(1));
    EXPECT_FALSE(visible());
}

TEST_F(HUD, remarkDuringADictation_waitsForItsEnd) {
    for (const auto& dictating : {State(State::Listening{actor.date()}), State(State::Transcribing{}),
                                  State(State::Translating{"German"})}) {
        hud.show(dictating);
        hud.showRemark("first", Tone::Info, seconds(6));
        hud.showRemark("last", Tone::Info, seconds(6));
        EXPECT_EQ(state(), dictating);
        hud.hide();
        actor.advance(seconds(0.2));
        EXPECT_EQ(state(), (State::Notice{"last", Tone::Info}));
        actor.advance(seconds(10));
        EXPECT_EQ(state(), State::Hidden{});
    }
}

TEST_F(HUD, remarkDuringADictationThatEndsWithANotice_comesAfterThat) {
    hud.show(State::Transcribing{});
    hud.showRemark("remark", Tone::Warn, seconds(6));
    hud.showNotice("Nothing recognized", Tone::Warn, seconds(3));
    actor.advance(seconds(2.9));
    EXPECT_EQ(state(), (State::Notice{"Nothing recognized", Tone::Warn}));
    actor.advance(seconds(0.5));
    EXPECT_EQ(state(), (State::Notice{"remark", Tone::Warn}));
}

TEST_F(HUD, remarkOutsideOfADictation_isSaidAtOnce) {
    hud.showRemark("remark", Tone::Info, seconds(6));
    EXPECT_EQ(state(), (State::Notice{"remark", Tone::Info}));
    hud.show(State::Listening{actor.date()});
    hud.recordingEnded();
    hud.showRemark("another", Tone::Info, seconds(6));
    EXPECT_EQ(state(), (State::Notice{"another", Tone::Info}));
}

TEST_F(HUD, remarkThatWaits_isSaidWhenTheRecordingEndsWithoutAText) {
    hud.show(State::Listening{actor.date()});
    hud.showRemark("remark", Tone::Info, seconds(6));
    hud.recordingEnded();
    actor.settle();
    EXPECT_EQ(state(), (State::Notice{"remark", Tone::Info}));
}

TEST_F(HUD, permission_takesClicksAndStays) {
    int dismissed = 0;
    int opened = 0;
    hud.showPermission(
        Kind::Microphone, [&] { ++dismissed; }, [&] { ++opened; });
    EXPECT_EQ(state(), State::PermissionRequired{Kind::Microphone});
    EXPECT_FALSE(panel->ignoresMouseEvents);
    actor.advance(seconds(600));
    EXPECT_TRUE(visible());
    hud.stateHolder().dismissPermission();
    hud.stateHolder().openPermissionSettings();
    EXPECT_EQ(dismissed, 1);
    EXPECT_EQ(opened, 1);
}

TEST_F(HUD, permissionThenNotice_clearsTheActionsAndLetsClicksThrough) {
    hud.showPermission(
        Kind::Accessibility, [] {}, [] {});
    hud.showNotice("notice", Tone::Info, seconds(3));
    EXPECT_FALSE(hud.stateHolder().permissionDismiss);
    EXPECT_FALSE(hud.stateHolder().permissionOpenSettings);
    EXPECT_TRUE(panel->ignoresMouseEvents);
}

TEST_F(HUD, permissionDismissThatHides_isSafeThoughItClearsItself) {
    auto witness = std::make_shared<std::string>("still here");
    std::string seen;
    hud.showPermission(
        Kind::Accessibility,
        [&, witness = std::move(witness)] {
            hud.hide();
            seen = *witness;
        },
        [] {});
    hud.stateHolder().dismissPermission();
    EXPECT_EQ(seen, "still here");
    actor.advance(SimulatedHUDPanel::fade);
    EXPECT_EQ(state(), State::Hidden{});
}

TEST_F(HUD, everyTransitionButPermission_switchesClicksOffAgain) {
    const std::vector<std::function<void()>> transitions{
        [&] { hud.show(State::Listening{actor.date()}); }, [&] { hud.update(State::Transcribing{}); },
        [&] { hud.showNotice("n", Tone::Info, seconds(1)); }, [&] { hud.hide(); }};
    for (const auto& transition : transitions) {
        hud.showPermission(
            Kind::Microphone, [] {}, [] {});
        transition();
        EXPECT_TRUE(panel->ignoresMouseEvents);
        EXPECT_FALSE(hud.stateHolder().permissionDismiss);
    }
}

TEST_F(HUD, cleanupAsATranslation_isOrdinary) {
    hud.update(State::Translating{"cleanup"});
    EXPECT_EQ(state().as<State::Translating>()->targetDisplayName, "cleanup");
}

TEST_F(HUD, levelBelowZero_decaysAsSilenceDoes) {
    hud.setLevel(1);
    hud.setLevel(-1);
    const float expected = 0.4F * 0.6F;
    EXPECT_EQ(hud.stateHolder().level.get(), expected);
}

TEST_F(HUD, levelAboveOneOrNotANumber_countsAsOne) {
    hud.setLevel(5);
    EXPECT_EQ(hud.stateHolder().level.get(), 0.4F);
    hud.setLevel(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(hud.stateHolder().level.get(), 1.0F * 0.4F + 0.4F * 0.6F);
}

TEST(HUDLifetime, controllerGoneBeforeTheNoticeEnds_theTaskEndsWithoutEffect) {
    SimulatedMainActor actor;
    {
        DictationHUDController hud(actor, [&] { return std::make_unique<SimulatedHUDPanel>(actor); });
        hud.showNotice("notice", Tone::Info, seconds(3));
        actor.settle();
    }
    EXPECT_TRUE(actor.runToRest(seconds(10)));
    EXPECT_GE(actor.elapsed(), 3) << "the task has not outlived the controller";
}

} // namespace
