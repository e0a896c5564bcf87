// SPDX-License-Identifier: MIT
#include "shell/settings/Updater.h"

#include "FakeDesktopServices.h"
#include "PrintQt.h"
#include "SimulatedMainActor.h"
#include "UnseenHUDPanel.h"
#include "shell/hud/DictationHUDController.h"

#include <gtest/gtest.h>

#include <optional>

using namespace talvera;
using Kind = UpdateAnswer::Kind;

namespace {

class UpdaterTest : public testing::Test {
protected:
    ~UpdaterTest() override { actor.runToRest(seconds(60)); } // to the end of the last notice

    void check() {
        updater->checkForUpdates();
        actor.settle();
    }
    const DictationHUDState::Notice* notice() const {
        return hud.currentState().as<DictationHUDState::Notice>();
    }

    test::SimulatedMainActor actor;
    test::FakeUpdateService service{actor};
    test::FakeNotifier notifier{actor};
    DictationHUDController hud{actor, [] { return std::make_unique<test::UnseenHUDPanel>(); }};
    std::optional<Updater> updater{std::in_place, service, notifier, hud};
};

TEST_F(UpdaterTest, beingMade_asksNothing) {
    actor.settle();
    EXPECT_EQ(service.questions, 0);
}

TEST_F(UpdaterTest, answers_areSaidInANotification) {
    check();
    service.answer = {Kind::Available, QStringLiteral("0.2.0")};
    check();
    for (const auto kind : {Kind::NotAPackage, Kind::NoService, Kind::Failed}) {
        service.answer = {kind, {}};
        check();
    }
    EXPECT_EQ(notifier.shown,
              QStringList({QStringLiteral("Talvera is up to date|Your system knows no newer version."),
                           QStringLiteral("Talvera 0.2.0 is available|"
                                          "Install it with your system's software updates."),
                           QStringLiteral("This copy of Talvera didn't come from a package|"
                                          "Look for a newer version where you got this one."),
                           QStringLiteral("This system has no package service to ask for updates|"
                                          "Look for a newer version where you got this one."),
                           QStringLiteral("Couldn't check for updates|"
                                          "Your system's package service didn't answer. Try again later.")}));
    EXPECT_FALSE(notice());
}

TEST_F(UpdaterTest, desktopWithoutNotifications_getsItOnTheHUD) {
    notifier.isThere = false;
    check();
    ASSERT_TRUE(notice());
    EXPECT_EQ(notice()->text, "Talvera is up to date");
    EXPECT_EQ(notice()->tone, DictationHUDState::NoticeTone::Info);
    EXPECT_EQ(hud.noticeDuration(), seconds(6.0));
    hud.hide();

    service.answer = {Kind::NoService, {}};
    check();
    ASSERT_TRUE(notice());
    EXPECT_EQ(notice()->tone, DictationHUDState::NoticeTone::Warn);
}

TEST_F(UpdaterTest, dictationUnderWay_isNotCoveredByIt) {
    notifier.isThere = false;
    hud.show(DictationHUDState::Transcribing{});
    check();
    EXPECT_TRUE(hud.currentState().as<DictationHUDState::Transcribing>());
    hud.hide();
    actor.settle();
    ASSERT_TRUE(notice()); // and is said when it is over
    EXPECT_EQ(notice()->text, "Talvera is up to date");
}

TEST_F(UpdaterTest, anotherNoticeOnTheHUD_givesWay) {
    notifier.isThere = false;
    hud.showNotice("Pasted", DictationHUDState::NoticeTone::Info, seconds(3));
    check();
    ASSERT_TRUE(notice());
    EXPECT_EQ(notice()->text, "Talvera is up to date");
}

TEST_F(UpdaterTest, question_isToldAsLongAsItLasts) {
    EXPECT_FALSE(updater->isChecking.get());
    updater->checkForUpdates();
    EXPECT_TRUE(updater->isChecking.get());
    actor.settle();
    EXPECT_FALSE(updater->isChecking.get());
}

TEST_F(UpdaterTest, secondAsking_waitsForTheFirstAnswer) {
    updater->checkForUpdates();
    updater->checkForUpdates();
    actor.settle();
    EXPECT_EQ(service.questions, 1);
    check();
    EXPECT_EQ(service.questions, 2);
}

TEST_F(UpdaterTest, answerAfterItsEnd_isNotSaid) {
    updater->checkForUpdates();
    updater.reset();
    actor.settle();
    EXPECT_TRUE(notifier.shown.isEmpty());
}

} // namespace
