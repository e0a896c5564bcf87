// SPDX-License-Identifier: MIT
// A session that tells nobody which window is active, until a window manager comes.
#include "PermissionTest.h"

using namespace talvera::test;

namespace {

class AccessibilityPermission : public PermissionTest {
protected:
    void TearDown() override {
        PermissionTest::TearDown();
        manager.kill();
        manager.waitForFinished();
    }
    /// Doesn't wait for its rest: the card moves.
    void startAgentThatAsks() {
        home.setPreferences({});
        agent.emplace(home);
        agent->await("hud permissionRequired accessibility");
    }
    void startWindowManager() {
        manager.start("openbox", QStringList());
        ASSERT_TRUE(manager.waitForStarted());
    }

    QProcess manager;
};

} // namespace

TEST_F(AccessibilityPermission, grantedWhileWeRun_bringsTheHotkey) {
    home.install("xfce4-accessibility-settings");
    startAgentThatAsks();
    clickOn("push button", "Accessibility access needed");
    agent->await("hud notice The window manager doesn't tell which window is active");

    startWindowManager();
    agent->await("accessibility trusted");
    agent->awaitRest();
    EXPECT_EQ(home.calls(), QStringList()) << "no page of the settings helps here";
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(AccessibilityPermission, grantedWithTheCardOnScreen_hidesIt) {
    startAgentThatAsks();
    EXPECT_TRUE(cardComes());
    startWindowManager();
    agent->await("accessibility trusted");
    agent->await("hud hidden");
    EXPECT_TRUE(cardGoes());
}
