// SPDX-License-Identifier: MIT
#include "CoreTest.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/settings/SettingsModel.h"
#include "shell/settings/SettingsWindow.h"

#include <optional>

using namespace talvera;
using namespace talvera::test;

namespace {

/// The parts as they are joined: what one of them does for another.
class AgentAsJoined : public CoreTest {
protected:
    AgentAsJoined() { launch(); }

    MenuPanelModel& openPanel() {
        world.agent().startedAgain();
        return *world.agent().panelModel();
    }
    bool isPanelOpen() const { return world.windows.menuPanel() && world.windows.menuPanel()->isVisible(); }
};

TEST_F(AgentAsJoined, preparedHUD_isUnseenAndTheOneOfTheFirstDictation) {
    EXPECT_EQ(world.windows.hudPanelsMade, 1);
    EXPECT_FALSE(world.windows.hudPanel()->isVisible());
    hold(1);
    EXPECT_TRUE(world.windows.hudPanel()->isVisible());
    EXPECT_EQ(world.windows.hudPanelsMade, 1);
    runToRest();
}

TEST_F(AgentAsJoined, unpreparedHUD_isMadeByTheFirstThingThatIsShown) {
    Agent next(world.machine(), world.settings, world.windows);
    EXPECT_EQ(world.windows.hudPanelsMade, 1);
    next.hud.showNotice("notice", HUD::NoticeTone::Info, seconds(1));
    EXPECT_EQ(world.windows.hudPanelsMade, 2);
    EXPECT_TRUE(world.windows.hudPanel()->isVisible());
    runToRest();
}

TEST_F(AgentAsJoined, secondStart_opensThePanelOfTheFirst) {
    EXPECT_FALSE(isPanelOpen());
    openPanel();
    EXPECT_TRUE(isPanelOpen());
    EXPECT_EQ(world.console.printed().constLast(), "[app] Talvera is running already");
}

TEST_F(AgentAsJoined, clickOnTheItemInTheTray_opensThePanel) {
    world.statusItem.onClick();
    EXPECT_TRUE(isPanelOpen());
}

TEST_F(AgentAsJoined, settingsOfThePanel_closeItAndOpenTheirWindow) {
    int brought = 0;
    world.windows.onSettingsWindow = [&] { ++brought; };
    openPanel().onSettings();
    runToRest();
    EXPECT_FALSE(isPanelOpen());
    EXPECT_EQ(brought, 1);
    EXPECT_EQ(world.agent().settingsWindow().model()->section(), "general");
}

TEST_F(AgentAsJoined, secondStartForASection_opensTheSettingsThere) {
    world.agent().startedAgain({.opensSettings = true, .section = SettingsSectionID::Language});
    EXPECT_FALSE(isPanelOpen());
    EXPECT_EQ(world.agent().settingsWindow().model()->section(), "language");
    world.windows.settingsWindow()->onClosed();
    runToRest();
    EXPECT_EQ(world.agent().settingsWindow().model(), nullptr);
}

TEST_F(AgentAsJoined, restartOfTheSettings_endsTheProgramAndSeesToTheNextOne) {
    world.agent().openSettings();
    world.agent().settingsWindow().model()->general()->relaunch();
    runToRest();
    EXPECT_EQ(world.relauncher.starts, 1);
    EXPECT_EQ(world.application.terminations, 1);
}

TEST_F(AgentAsJoined, shortcutThatIsRecordedInTheSettings_standsTheHotkeysStill) {
    world.agent().openSettings(SettingsSectionID::Hotkey);
    auto& settings = *world.agent().settingsWindow().model();
    for (auto* recorder : {settings.hotkey()->recorder(), settings.language()->toggle()}) {
        recorder->record();
        EXPECT_TRUE(world.agent().onboarding.suspendHotkey.get());
        recorder->cancel();
        EXPECT_FALSE(world.agent().onboarding.suspendHotkey.get());
    }
}

TEST_F(AgentAsJoined, fn_endsTapToToggleAlsoWithoutTheSettings) {
    world.settings.hotkeyTapToToggle.set(true);
    world.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
    EXPECT_FALSE(world.settings.hotkeyTapToToggle.get());
}

TEST(LaunchRequests, settings_areAskedForWithOrWithoutASection) {
    EXPECT_EQ(LaunchRequest::of({}), LaunchRequest());
    EXPECT_EQ(LaunchRequest::of({"-platform", "xcb"}), LaunchRequest());
    EXPECT_EQ(LaunchRequest::of({"--settings"}), LaunchRequest{.opensSettings = true});
    for (const auto section : allCases<SettingsSectionID>()) {
        const LaunchRequest request{.opensSettings = true, .section = section};
        EXPECT_EQ(LaunchRequest::of(request.arguments()), request);
    }
    EXPECT_EQ(LaunchRequest::of({"--settings", "-platform", "xcb"}), LaunchRequest{.opensSettings = true});
    EXPECT_EQ(LaunchRequest::of({"--settings", "colours"}), std::nullopt);
}

TEST_F(AgentAsJoined, quitOfThePanel_endsTheProgram) {
    openPanel().onQuit();
    EXPECT_EQ(world.application.terminations, 1);
}

TEST_F(AgentAsJoined, updatesOfThePanel_areAskedForAndTold) {
    openPanel().onCheckForUpdates();
    runToRest();
    EXPECT_EQ(world.updates.questions, 1);
    EXPECT_EQ(world.notifier.shown.size(), 1);
}

TEST_F(AgentAsJoined, languageModelOfThePanel_opensTheFolderOfModels) {
    openPanel().onLanguageModelSettings();
    EXPECT_EQ(world.fileBrowser.shown, QStringList{"/models/language"});
    EXPECT_TRUE(world.languageModelChoice.note.contains("GGUF"));
    EXPECT_EQ(story({"hud"}),
              QStringList{"hud notice Language models belong into /models/language info 6.0"});
    runToRest();
}

TEST_F(AgentAsJoined, languageModelsFolderThatCantBeMade_isTold) {
    world.languageModelChoice.refusesFolder = true;
    openPanel().onLanguageModelSettings();
    EXPECT_TRUE(world.fileBrowser.shown.isEmpty());
    EXPECT_EQ(story({"hud"}),
              QStringList{"hud notice This computer has no on-device language model info 6.0"});
    runToRest();
}

TEST_F(AgentAsJoined, adviceOfThePanel_isShownOnTheHUD) {
    openPanel().onAdvice("Plug in a microphone");
    EXPECT_EQ(story({"hud"}), QStringList{"hud notice Plug in a microphone warn 6.0"});
    runToRest();
}

TEST_F(AgentAsJoined, adviceOfThePanelWhileListening_waitsForTheEndOfTheDictation) {
    auto& panel = openPanel();
    press();
    advance(1);
    panel.onAdvice("Plug in a microphone");
    world.actor.settle();
    EXPECT_TRUE(hud().as<HUD::Listening>());
    release();
    runToRest();
    EXPECT_EQ(story({"hud", "type"}).sliced(2, 3),
              QStringList({"type hello world", "hud hidden", "hud notice Plug in a microphone warn 6.0"}));
}

TEST_F(AgentAsJoined, microphoneThatGoesWhileListening_isToldAndWhatWasSaidIsKept) {
    press();
    advance(1);
    world.microphone.lose();
    world.actor.settle();
    EXPECT_EQ(story({"hud"}).constLast(),
              "hud notice The microphone is gone. What you said before is kept. warn 6.0");
    EXPECT_EQ(state(), State::Recording);
    release();
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList{"type hello world"});
}

/// A user of a language that there is no font for.
class AgentWithoutAFont : public AgentAsJoined {
protected:
    AgentWithoutAFont() {
        const auto texts = world.directories.resources + "/Resources/texts";
        world.disk.createDirectories(texts);
        world.disk.write(texts + "/ja.json", R"({"fonts.missing.title": "unreadable"})");
        world.settings.appLanguage.set("ja");
        world.fonts.lacking = QString::fromUtf8("設");
    }
    void startNext() {
        next.emplace(world.machine(), world.settings, world.windows);
        next->launch();
        world.actor.settle();
    }

    std::optional<Agent> next;
};

TEST_F(AgentWithoutAFont, launch_tellsWhichPackageHasIt) {
    startNext();
    EXPECT_EQ(world.notifier.shown,
              QStringList{"Your language needs the package fonts-noto-cjk|No font of this computer has its "
                          "letters. Install the package, then start Talvera again."});
    EXPECT_TRUE(next->hud.currentState().as<HUD::Hidden>());
}

TEST_F(AgentWithoutAFont, desktopWithoutNotifications_getsItOnTheHUD) {
    world.notifier.isThere = false;
    startNext();
    const auto* const notice = next->hud.currentState().as<HUD::Notice>();
    ASSERT_TRUE(notice);
    EXPECT_EQ(notice->text, "Your language needs the package fonts-noto-cjk");
    runToRest();
}

TEST_F(AgentWithoutAFont, fontThatIsThere_isNotSpokenOf) {
    world.fonts.lacking.clear();
    startNext();
    EXPECT_EQ(world.notifier.shown, QStringList());
}

TEST_F(AgentAsJoined, panel_followsTheDictation) {
    auto& panel = openPanel();
    EXPECT_EQ(panel.state(), "idle");
    hold(1);
    EXPECT_EQ(panel.state(), "transcribing");
    runToRest();
    EXPECT_EQ(panel.state(), "idle");
    EXPECT_EQ(panel.dictations(), "1");
}

} // namespace
