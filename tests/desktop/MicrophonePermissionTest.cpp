// SPDX-License-Identifier: MIT
// A microphone that is lost, from the loss to the cure: on the card, in the panel, and in the settings that
// their buttons open.
#include "Microphone.h"
#include "OtherWindow.h"
#include "PermissionTest.h"

using namespace talvera::test;

namespace {

class MicrophonePermission : public PermissionTest {
protected:
    bool bannerIsShown() const {
        return ScreenReader::find(agent->pid(), anyRole, "Talvera isn't fully set up").has_value();
    }
};

} // namespace

TEST_F(MicrophonePermission, card_takesClicksAndOpensTheSettings) {
    home.install("pavucontrol");
    startAgent();
    OtherWindow application({0, 0, 1280, 800}, Qt::darkGreen);
    application.activate();
    Microphone::unplug();
    agent->await("hud permissionRequired microphone");
    clickOn("push button", "Microphone access needed");
    agent->await("hud hidden");
    EXPECT_TRUE(opens({"pavucontrol --tab=4"}));

    keys.tap(hotkey); // a press asks again
    agent->await("hud permissionRequired microphone");
    clickOn("push button", "Dismiss");
    agent->await("hud hidden");
    EXPECT_TRUE(cardGoes());
    EXPECT_EQ(application.clicks(), 0);
    EXPECT_TRUE(application.isActive());

    keys.click(640, 700); // where the card was
    EXPECT_EQ(application.awaitClicks(1), 1);
    EXPECT_EQ(home.calls().size(), 1);
    Microphone::plugIn();
    agent->await("microphone authorized");
}

TEST_F(MicrophonePermission, settingsThatAreNotInstalled_areReplacedByAdvice) {
    home.set("PATH", QString());
    startAgent();
    Microphone::unplug();
    agent->await("hud permissionRequired microphone");
    clickOn("push button", "Microphone access needed");
    agent->await("hud notice Plug in a microphone");
    agent->await("hud hidden");
    Microphone::plugIn();
    agent->await("microphone authorized");
}

TEST_F(MicrophonePermission, panel_tellsOfTheLossUntilTheCure) {
    home.install("pavucontrol");
    startAgent();
    openPanel();
    EXPECT_FALSE(bannerIsShown());
    Microphone::unplug();
    EXPECT_EQ(shown("push button", "Fix").description, "Allow Microphone");
    EXPECT_TRUE(bannerIsShown());
    clickOn("push button", "Fix");
    EXPECT_TRUE(opens({"pavucontrol --tab=4"}));
    EXPECT_TRUE(panel().has_value());

    Microphone::plugIn();
    EXPECT_TRUE(eventually([this] { return !bannerIsShown(); }));
    shown(anyRole, "Translate to");
    closePanel();
}
