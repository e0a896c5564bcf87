// SPDX-License-Identifier: MIT
#include "shell/readiness/ReadinessMonitor.h"

#include "FakeLanguageModel.h"
#include "FakeMicrophonePermission.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSettingsPanels.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

#include <optional>

using namespace talvera;
using namespace talvera::test;
using AI = AIAvailabilityState;

namespace {

class Readiness : public testing::Test {
protected:
    ReadinessMonitor& monitor() {
        if (!made)
            made.emplace(ReadinessMonitor::Parts{actor, microphone, access, languageModel, settingsPanels,
                                                 activation});
        return *made;
    }

    SimulatedMainActor actor;
    FakeMicrophonePermission microphone{actor};
    FakeProgramActivation activation;
    FakeSessionAccess access;
    FakeLanguageModel languageModel;
    FakeSettingsPanels settingsPanels;
    std::optional<ReadinessMonitor> made;
};

TEST_F(Readiness, everythingGranted_isReadyAndRests) {
    EXPECT_TRUE(monitor().isReady());
    EXPECT_EQ(monitor().missingCount(), 0);
    EXPECT_FALSE(monitor().isPolling());
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, bothMissing_countsTwo) {
    microphone.current = AuthorizationStatus::Denied;
    access.trusted = false;
    EXPECT_EQ(monitor().missingCount(), 2);
    EXPECT_FALSE(monitor().isReady());
}

TEST_F(Readiness, microphoneGrantedInTheBackground_isSeenWithinTwoSeconds) {
    microphone.current = AuthorizationStatus::Denied;
    EXPECT_TRUE(monitor().isPolling());
    actor.advance(seconds(3));
    microphone.current = AuthorizationStatus::Authorized;
    actor.advance(seconds(2));
    EXPECT_TRUE(monitor().isReady());
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, microphoneThatAnnouncesItsGrant_isSeenAtOnce) {
    microphone.current = AuthorizationStatus::NotDetermined;
    EXPECT_FALSE(monitor().isReady());
    microphone.change(AuthorizationStatus::Authorized);
    EXPECT_TRUE(monitor().isReady());
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, accessibilityRevokedAtRest_isSeenAtTheNextRefreshOnly) {
    monitor();
    access.trusted = false;
    actor.advance(seconds(60));
    EXPECT_TRUE(monitor().isReady());
    monitor().refresh();
    EXPECT_FALSE(monitor().isReady());
    EXPECT_TRUE(monitor().isPolling());
}

TEST_F(Readiness, userTurningToTheProgram_makesItLookAgainInATurnOfItsOwn) {
    monitor();
    access.trusted = false;
    activation.activate();
    EXPECT_TRUE(monitor().axTrusted.get());
    actor.settle();
    EXPECT_FALSE(monitor().axTrusted.get());
}

TEST_F(Readiness, monitorThatGoesBeforeThat_isNotAskedAnyMore) {
    monitor();
    activation.activate();
    made.reset();
    activation.activate();
    actor.settle();
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, modelBecomingReady_isPublishedWithinTwoSecondsAndEndsThePoll) {
    languageModel.reason = LanguageModel::UnavailableReason::ModelNotReady;
    EXPECT_EQ(monitor().aiState.get(), AI::ModelNotReady);
    EXPECT_TRUE(monitor().isPolling());
    languageModel.reason = std::nullopt;
    actor.advance(seconds(2));
    EXPECT_EQ(monitor().aiState.get(), AI::Available);
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, modelThatIsSwitchedOn_isPublishedWithinTwoSecondsAndEndsThePoll) {
    languageModel.reason = LanguageModel::UnavailableReason::IntelligenceOff;
    EXPECT_TRUE(monitor().isPolling());
    languageModel.reason = std::nullopt;
    actor.advance(seconds(2));
    EXPECT_EQ(monitor().aiState.get(), AI::Available);
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, modelThatTellsOfAChange_isPublishedAtOnce) {
    monitor();
    languageModel.reason = std::nullopt;
    languageModel.tellChange();
    EXPECT_EQ(monitor().aiState.get(), AI::Available);
    languageModel.reason = LanguageModel::UnavailableReason::IntelligenceOff;
    languageModel.tellChange();
    EXPECT_EQ(monitor().aiState.get(), AI::IntelligenceOff);
}

TEST_F(Readiness, modelThatTellsOfEachChange_isNotPolled) {
    languageModel.tellsChanges = true;
    for (const auto reason : {LanguageModel::UnavailableReason::IntelligenceOff,
                              LanguageModel::UnavailableReason::ModelNotReady}) {
        languageModel.reason = reason;
        languageModel.tellChange();
        monitor().refresh();
        EXPECT_FALSE(actor.hasTimers());
    }
    access.trusted = false;
    monitor().refresh();
    EXPECT_TRUE(monitor().isPolling()) << "what is missing besides isn't told";
}

TEST_F(Readiness, computerThatCannotHaveAModel_isNotPolled) {
    languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    EXPECT_FALSE(monitor().isPolling());
}

TEST_F(Readiness, inputMonitoringMissingAlone_isReadyWithoutAPoll) {
    access.inputMonitoring = false;
    EXPECT_TRUE(monitor().isReady());
    EXPECT_FALSE(monitor().inputMonitoringGranted.get());
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, refreshWithNothingChanged_tellsNobody) {
    int told = 0;
    const auto count = [&](const auto&) { ++told; };
    const auto a = monitor().micStatus.observe(count);
    const auto b = monitor().axTrusted.observe(count);
    const auto c = monitor().inputMonitoringGranted.observe(count);
    const auto d = monitor().aiState.observe(count);
    monitor().refresh();
    EXPECT_EQ(told, 0);
    access.trusted = false;
    monitor().refresh();
    EXPECT_EQ(told, 1);
}

TEST_F(Readiness, secondRefreshWhilePolling_startsNoSecondTimer) {
    access.trusted = false;
    monitor();
    monitor().refresh();
    monitor().refresh();
    access.trusted = true;
    monitor().refresh();
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, monitorGone_leavesNoTimer) {
    access.trusted = false;
    monitor();
    made.reset();
    EXPECT_FALSE(actor.hasTimers());
}

TEST_F(Readiness, currentAIState_readsWithoutPublishing) {
    monitor();
    languageModel.reason = std::nullopt;
    EXPECT_EQ(monitor().currentAIState(), AI::Available);
    EXPECT_EQ(monitor().aiState.get(), AI::DeviceNotEligible);
}

TEST_F(Readiness, reasonsOfAMissingModel_haveTheirStates) {
    using Reason = LanguageModel::UnavailableReason;
    EXPECT_EQ(ReadinessMonitor::aiStateFor(std::nullopt), AI::Available);
    EXPECT_EQ(ReadinessMonitor::aiStateFor(Reason::IntelligenceOff), AI::IntelligenceOff);
    EXPECT_EQ(ReadinessMonitor::aiStateFor(Reason::DeviceNotEligible), AI::DeviceNotEligible);
    EXPECT_EQ(ReadinessMonitor::aiStateFor(Reason::ModelNotReady), AI::ModelNotReady);
}

TEST_F(Readiness, requestMicrophone_waitsForTheAnswer) {
    microphone.current = AuthorizationStatus::NotDetermined;
    bool answered = false;
    monitor().requestMicrophone([&] { answered = true; });
    EXPECT_FALSE(answered);
    actor.settle();
    EXPECT_TRUE(answered);
}

TEST_F(Readiness, missingPermission_opensItsPageOfTheSettings) {
    using Panel = SettingsPanels::Panel;
    access.trusted = false;
    EXPECT_EQ(monitor().openMicrophoneSettings(), std::nullopt);
    EXPECT_EQ(monitor().openAccessibilitySettings(), std::nullopt);
    EXPECT_EQ(settingsPanels.opened, (std::vector{Panel::Microphone, Panel::Accessibility}));
}

TEST_F(Readiness, whatIsMissing_isToldWithItsCause) {
    EXPECT_EQ(monitor().microphoneLackText(), "");
    EXPECT_EQ(monitor().accessibilityLackText(), "");
    EXPECT_FALSE(monitor().canAllowAccessibility());
    microphone.current = AuthorizationStatus::NotDetermined;
    EXPECT_EQ(monitor().microphoneLackText(), "The sound server hasn't answered yet.");
    microphone.current = AuthorizationStatus::Denied;
    microphone.denial = MicrophoneLack::Server;
    EXPECT_TRUE(monitor().microphoneLackText().startsWith("No sound server is running."));
    access.trusted = false;
    EXPECT_TRUE(monitor().canAllowAccessibility());
    access.lack = SessionLack::KeyWatching;
    EXPECT_EQ(monitor().accessibilityLackText(),
              "This session doesn't let programs watch the keyboard. Choose another one when you log in.");
    EXPECT_FALSE(monitor().canAllowAccessibility());
}

TEST_F(Readiness, whatAWordOfOursGets_isAskedForAndNoPageOpened) {
    access.trusted = false;
    access.lack = SessionLack::ExtensionOff;
    EXPECT_TRUE(monitor().canAllowAccessibility());
    EXPECT_TRUE(monitor().accessibilityLackText().startsWith("Talvera works in GNOME by an extension"));
    EXPECT_EQ(monitor().openAccessibilitySettings(), std::nullopt);
    EXPECT_EQ(access.given, std::vector{SessionLack::ExtensionOff});
    EXPECT_TRUE(settingsPanels.opened.empty());
    access.lack = SessionLack::ExtensionUnknown;
    EXPECT_FALSE(monitor().canAllowAccessibility());
    EXPECT_EQ(monitor().openAccessibilitySettings(),
              "GNOME Shell doesn't know Talvera's extension yet. Log out and in again, once.");
}

TEST_F(Readiness, whatNoPageCanGive_isToldInstead) {
    EXPECT_EQ(monitor().openAccessibilitySettings(), "Nothing is missing any more");
    access.trusted = false;
    access.lack = SessionLack::ActiveWindow;
    EXPECT_EQ(
        monitor().openAccessibilitySettings(),
        "The window manager doesn't tell which window is active (or none is running). Use another one.");
    EXPECT_TRUE(settingsPanels.opened.empty());
    settingsPanels.hasPanels = false;
    microphone.current = AuthorizationStatus::Denied;
    microphone.denial = MicrophoneLack::Microphone;
    EXPECT_TRUE(monitor().openMicrophoneSettings()->startsWith("Plug in a microphone"));
    microphone.denial = MicrophoneLack::Server;
    EXPECT_EQ(monitor().openMicrophoneSettings(), monitor().microphoneLackText());
}

} // namespace
