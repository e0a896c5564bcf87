// SPDX-License-Identifier: MIT
// What the HUD's controller relies on, of the real panel and of the simulated one alike.
#include "PanelOnX11.h"
#include "SimulatedHUDPanel.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

struct SimulatedStage {
    HUDPanel& subject() { return panel; }
    void run(Duration duration) { actor.advance(duration); }

    SimulatedMainActor actor;
    SimulatedHUDPanel panel{actor};
};

struct RealStage : PanelOnX11 {
    HUDPanel& subject() { return panel; }
};

template <typename Stage>
class HUDPanelContract : public testing::Test {
protected:
    Stage stage;
    HUDPanel& panel = stage.subject();
};

using Stages = testing::Types<SimulatedStage, RealStage>;
TYPED_TEST_SUITE(HUDPanelContract, Stages);

TYPED_TEST(HUDPanelContract, newPanel_isNotVisible) {
    EXPECT_FALSE(this->panel.isVisible());
}

TYPED_TEST(HUDPanelContract, fadeIn_isVisibleAtOnceAndStays) {
    this->panel.fadeIn();
    EXPECT_TRUE(this->panel.isVisible());
    this->stage.run(seconds(0.3));
    EXPECT_TRUE(this->panel.isVisible());
}

TYPED_TEST(HUDPanelContract, fadeOut_goesAfterTheFadeAndTellsOnce) {
    this->panel.fadeIn();
    int told = 0;
    this->panel.fadeOut([&] {
        EXPECT_FALSE(this->panel.isVisible());
        ++told;
    });
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(this->panel.isVisible());
    this->stage.run(seconds(0.1));
    EXPECT_EQ(told, 0);
    this->stage.run(seconds(0.3));
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(this->panel.isVisible());
}

TYPED_TEST(HUDPanelContract, fadeInDuringAFadeOut_doesNotStopIt) {
    this->panel.fadeIn();
    int told = 0;
    this->panel.fadeOut([&] { ++told; });
    this->stage.run(seconds(0.05));
    this->panel.fadeIn();
    EXPECT_TRUE(this->panel.isVisible());
    this->stage.run(seconds(0.4));
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(this->panel.isVisible());
}

TYPED_TEST(HUDPanelContract, twoFadesOut_bothTell) {
    this->panel.fadeIn();
    int told = 0;
    this->panel.fadeOut([&] { ++told; });
    this->panel.fadeOut([&] { ++told; });
    this->stage.run(seconds(0.5));
    EXPECT_EQ(told, 2);
}

TYPED_TEST(HUDPanelContract, panelThatWasGone_comesBack) {
    this->panel.fadeIn();
    this->panel.fadeOut([] {});
    this->stage.run(seconds(0.4));
    this->panel.fadeIn();
    EXPECT_TRUE(this->panel.isVisible());
}

} // namespace
