// SPDX-License-Identifier: MIT
// When the wizard's window is there, and when it comes to the front.
#include "OnboardingFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class OnboardingWindows : public OnboardingFixture {};

TEST_F(OnboardingWindows, shownTwice_isOneWindowBroughtToTheFront) {
    open();
    auto* const first = shown;
    controller.advance();
    open();
    EXPECT_EQ(shown, first);
    EXPECT_EQ(toFront, 2);
    EXPECT_EQ(controller.step.get(), Step::EverywhereStep);
}

TEST_F(OnboardingWindows, closed_isGoneAndComesAnew) {
    open();
    EXPECT_TRUE(window.isOpen());
    close();
    EXPECT_FALSE(window.isOpen());
    EXPECT_EQ(shown, nullptr);
    open();
    EXPECT_TRUE(shown);
}

TEST_F(OnboardingWindows, closedByItsOwnButton_livesToTheEndOfTheClick) {
    open();
    finishDownload();
    goTo(Step::DemoStep);
    controller.pressPrimary();
    EXPECT_FALSE(window.isOpen());
    EXPECT_TRUE(shown);
    actor.settle();
    EXPECT_FALSE(shown);
}

TEST_F(OnboardingWindows, closedInTheProgramsLastTurn_goesWithItsOwner) {
    {
        OnboardingWindow last(actor, controller, [this] { return std::make_unique<CountedWindow>(*this); });
        last.show();
        shown->onClosed();
        EXPECT_TRUE(shown);
    }
    EXPECT_FALSE(shown);
    actor.settle(); // for what was meant to end it
}

TEST_F(OnboardingWindows, reactivatedTwice_comesBackOnceAfterTheLast) {
    open();
    window.reactivate();
    actor.advance(seconds(0.3));
    window.reactivate();
    EXPECT_EQ(toFront, 3);
    actor.advance(seconds(0.3));
    EXPECT_EQ(toFront, 3); // the first one's second time was given up
    actor.advance(seconds(0.05));
    EXPECT_EQ(toFront, 4);
}

TEST_F(OnboardingWindows, reactivatedAndClosed_staysAway) {
    open();
    window.reactivate();
    close();
    actor.advance(seconds(1));
    EXPECT_EQ(toFront, 2);
    EXPECT_EQ(shown, nullptr);
}

TEST_F(OnboardingWindows, reactivatedWithoutAWindow_makesNone) {
    window.reactivate();
    actor.advance(seconds(1));
    EXPECT_EQ(toFront, 0);
    EXPECT_EQ(shown, nullptr);
}

} // namespace
