// SPDX-License-Identifier: MIT
// What other programs may have the agent do.
#include "core/AgentCommand.h"
#include "CoreTest.h"
#include "core/CommandedHotkey.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/SettingsModel.h"
#include "shell/settings/SettingsWindow.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace talvera;
using namespace talvera::test;

namespace {

using Verb = AgentCommand::Verb;
using std::chrono::milliseconds;

TEST(AgentCommandTest, wordsOfACommand_areThatCommand) {
    for (const auto verb : allCases<Verb>()) {
        const auto command = AgentCommand::of({rawValue(verb)});
        EXPECT_EQ(command, (AgentCommand{verb, false}));
        EXPECT_EQ(AgentCommand::of(command->words()), command);
    }
    EXPECT_EQ(AgentCommand::of({"status", "--json"}), (AgentCommand{Verb::Status, true}));
    EXPECT_EQ((AgentCommand{Verb::Status, true}).words(), QStringList({"status", "--json"}));
    for (const auto section : allCases<SettingsSectionID>()) {
        const AgentCommand command{Verb::Settings, false, section};
        EXPECT_EQ(command.words(), QStringList({"settings", rawValue(section)}));
        EXPECT_EQ(AgentCommand::of(command.words()), command);
    }
}

TEST(AgentCommandTest, otherWords_areNone) {
    const std::vector<QStringList> others{{},
                                          {""},
                                          {"Press"},
                                          {"pres"},
                                          {"press", "release"},
                                          {"press", "--json"},
                                          {"settings", "nonsense"},
                                          {"settings", ""},
                                          {"settings", "--json"},
                                          {"settings", "hotkey", "ai"},
                                          {"panel", "hotkey"},
                                          {"status", "hotkey"},
                                          {"status", "json"},
                                          {"status", "--json", "--json"},
                                          {"--json"},
                                          {"--json", "status"}};
    for (const auto& words : others)
        EXPECT_EQ(AgentCommand::of(words), std::nullopt) << words.join(u' ').toStdString();
}

class Commanded : public CoreTest {
protected:
    QString obey(Verb verb, CommandedHotkey::Begun begun = {}) {
        const auto answer = world.agent().obey({verb, false}, begun);
        world.actor.settle();
        return answer;
    }
    QJsonObject status() {
        return QJsonDocument::fromJson(world.agent().obey({Verb::Status, true}).toUtf8()).object();
    }
};

TEST_F(Commanded, pressAndRelease_dictate) {
    launch();
    obey(Verb::Press, milliseconds(1000));
    advance(2);
    EXPECT_EQ(state(), State::Recording);
    obey(Verb::Release, milliseconds(3000));
    EXPECT_EQ(state(), State::Transcribing);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList{"type hello world"});
}

TEST_F(Commanded, briefPress_leavesNoTrace) {
    launch();
    obey(Verb::Press, milliseconds(1000));
    advance(0.3);
    obey(Verb::Release, milliseconds(1300));
    runToRest();
    EXPECT_EQ(world.story(), QStringList());
}

TEST_F(Commanded, releaseThatOvertakesItsPress_endsItAllTheSame) {
    launch();
    obey(Verb::Release, milliseconds(1010));
    obey(Verb::Press, milliseconds(1000));
    runToRest();
    EXPECT_EQ(world.story(), QStringList());

    obey(Verb::Press, milliseconds(2000)); // and the next one is a press
    advance(1);
    EXPECT_EQ(state(), State::Recording);
    obey(Verb::Release, milliseconds(3000));
}

TEST_F(Commanded, releaseThatOvertakesAnotherRelease_changesNothing) {
    launch();
    obey(Verb::Release, milliseconds(2000));
    obey(Verb::Release, milliseconds(1000));
    obey(Verb::Press, milliseconds(1500));
    runToRest();
    EXPECT_EQ(world.story(), QStringList());
}

TEST_F(Commanded, pressOfAProcessThatCantBeAsked_counts) {
    launch();
    obey(Verb::Release);
    obey(Verb::Press);
    advance(1);
    EXPECT_EQ(state(), State::Recording);
    obey(Verb::Release);
}

TEST_F(Commanded, autoRepeatOfTheHeldKey_isOnePress) {
    launch();
    obey(Verb::Press, milliseconds(1000));
    for (int i = 0; i < 40; ++i) {
        advance(i == 0 ? 0.5 : 0.03);
        obey(Verb::Press, milliseconds(1500 + 30 * i));
    }
    EXPECT_EQ(state(), State::Recording);
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
    obey(Verb::Release, milliseconds(3000));
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Commanded, autoRepeatInTapMode_isOnePress) {
    useTapMode();
    launch();
    obey(Verb::Press, milliseconds(1000));
    advance(0.6);
    obey(Verb::Press, milliseconds(1600));
    EXPECT_EQ(state(), State::Recording);
    advance(0.9);
    obey(Verb::Press, milliseconds(2500));
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Commanded, tapsInTapMode_countWhateverTheirReleasesHaveOvertaken) {
    useTapMode();
    launch();
    obey(Verb::Release, milliseconds(1010));
    obey(Verb::Press, milliseconds(1000));
    EXPECT_EQ(state(), State::Recording);
    advance(2);
    obey(Verb::Press, milliseconds(3000));
    obey(Verb::Release, milliseconds(3010));
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Commanded, quickPressesWithReleases_areNoAutoRepeat) {
    useTapMode();
    launch();
    obey(Verb::Press, milliseconds(1000));
    obey(Verb::Release, milliseconds(1100));
    advance(0.5);
    obey(Verb::Press, milliseconds(1500));
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Commanded, toggle_beginsAndEndsAlsoInHoldMode) {
    launch();
    obey(Verb::Toggle);
    EXPECT_EQ(state(), State::Recording);
    for (int i = 0; i < 10; ++i) { // the key is held for long
        advance(i == 0 ? 0.66 : 0.03);
        obey(Verb::Toggle);
    }
    EXPECT_EQ(state(), State::Recording);
    advance(1);
    obey(Verb::Toggle);
    EXPECT_EQ(state(), State::Transcribing);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList{"type hello world"});
}

TEST_F(Commanded, toggle_endsWhatTheHotkeyHasBegun) {
    launch();
    press();
    advance(2);
    obey(Verb::Toggle);
    EXPECT_EQ(state(), State::Transcribing);
    release();
}

TEST_F(Commanded, translate_switchesBackAndForth) {
    launch();
    world.settings.lastTargetLanguageCode.set("en");
    obey(Verb::Translate);
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "en");
    EXPECT_EQ(status()["targetLanguage"].toString(), "en");
    obey(Verb::Translate);
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "off");
}

TEST_F(Commanded, panel_opens) {
    launch();
    obey(Verb::Panel);
    EXPECT_TRUE(world.windows.menuPanel()->isVisible());
}

TEST_F(Commanded, settings_openAtTheSectionAskedForAndKeepItOtherwise) {
    launch();
    EXPECT_EQ(world.agent().settingsWindow().model(), nullptr);
    world.agent().obey({Verb::Settings, false, SettingsSectionID::Hotkey});
    EXPECT_EQ(world.agent().settingsWindow().model()->section(), "hotkey");
    obey(Verb::Settings);
    EXPECT_EQ(world.agent().settingsWindow().model()->section(), "hotkey");
}

TEST_F(Commanded, settings_closeTheOpenPanel) {
    launch();
    obey(Verb::Panel);
    obey(Verb::Settings);
    runToRest(); // it fades out
    EXPECT_FALSE(world.windows.menuPanel()->isVisible());
}

TEST_F(Commanded, status_followsTheDictationAndTellsNoWordOfIt) {
    launch();
    EXPECT_EQ(status(), (QJsonObject{{"state", "idle"},
                                     {"ready", true},
                                     {"microphone", true},
                                     {"keyboard", true},
                                     {"model", true},
                                     {"hotkey", "watching"},
                                     {"spokenLanguage", "auto"},
                                     {"targetLanguage", "off"},
                                     {"version", TALVERA_VERSION}}));
    EXPECT_EQ(obey(Verb::Status), "Talvera " TALVERA_VERSION "\nIdle, ready to record\n"
                                  "Spoken language: auto\nTranslation into: off");
    press();
    advance(1);
    EXPECT_EQ(status()["state"].toString(), "recording");
    release();
    world.actor.settle();
    EXPECT_EQ(status()["state"].toString(), "transcribing");
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList{"type hello world"});
    EXPECT_FALSE(obey(Verb::Status).contains("hello"));
    EXPECT_EQ(status().size(), 9);
}

TEST_F(Commanded, status_tellsWhatIsLacking) {
    launch();
    world.setModelReady(false);
    world.microphonePermission.current = AuthorizationStatus::Denied;
    world.access.trusted = false;
    const auto told = status();
    for (const auto* part : {"ready", "microphone", "keyboard", "model"})
        EXPECT_FALSE(told[part].toBool(true)) << part;
    const auto lines = obey(Verb::Status).split(u'\n');
    EXPECT_EQ(lines.value(1), "Not ready to record yet");
    EXPECT_EQ(lines.size(), 7);
    EXPECT_TRUE(lines.contains("The speech model isn't there yet."));
    world.microphonePermission.current = AuthorizationStatus::Authorized;
    world.access.trusted = true;
    world.agent().readiness.refresh(); // which else goes on looking
}

TEST_F(Commanded, commandsAfterTheEnd_doNothing) {
    launch();
    world.agent().stop();
    for (const auto verb : allCases<Verb>())
        EXPECT_EQ(obey(verb), "");
    runToRest();
    EXPECT_EQ(world.story(), QStringList());
}

} // namespace
