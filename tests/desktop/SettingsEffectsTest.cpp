// SPDX-License-Identifier: MIT
// What each setting that is changed in the window does to the program that runs.
#include "Loudspeaker.h"
#include "RecogniserGate.h"
#include "SettingsOnScreen.h"
#include "Tray.h"
#include "X11Windows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <stdexcept>

#include <linux/input-event-codes.h>

#include <csignal>

using namespace talvera::test;

namespace {

constexpr QSize leastIcon{8, 8};

const QString sentence = QStringLiteral("Please send the report tomorrow.");

class SettingsEffects : public SettingsOnScreen {
protected:
    void strikeCtrlAltJ() {
        keys.press(Key::leftControl);
        keys.press(Key::leftAlt);
        tap(KEY_J);
        keys.release(Key::leftAlt);
        keys.release(Key::leftControl);
    }
    /// Dictates into an editor. Whether the text comes in one piece, as what is pasted does.
    bool comesInOnePiece() {
        Receiver editor(Receiver::Kind::Gtk);
        holdAndSay(spoken(sentence));
        bool isInPieces = false;
        const bool came = editor.waitFor([&](const QString& text) {
            isInPieces |= !text.isEmpty() && text != sentence;
            return text == sentence;
        });
        if (!came)
            throw std::runtime_error("no text comes, but: " + editor.text().toStdString());
        agent->await("menu idle");
        return !isInPieces;
    }
    QString autostartFolder() const {
        return QDir::cleanPath(QFileInfo(home.preferencesFile()).dir().filePath("../autostart"));
    }
    bool startsAtLogin() const {
        QFile file(autostartFolder() + "/talvera.desktop");
        return file.open(QFile::ReadOnly) && !file.readAll().contains("Hidden=true");
    }
};

/// With a recogniser that waits until something has happened.
class ProtectionEffects : public SettingsEffects {
protected:
    /// Dictates into an editor, and goes to another window before the text is there.
    void dictateAndLeave(std::optional<Receiver>& editor, std::optional<Receiver>& other) {
        editor.emplace(Receiver::Kind::Gtk, "the editor");
        holdAndSay(spoken(sentence));
        gate.awaitRun();
        other.emplace(Receiver::Kind::Qt, "the other window");
        gate.letIn();
    }

    RecogniserGate gate;
};

/// Starts the program without root's right to write everywhere, so that a folder that can't be written to is
/// one whoever runs the tests.
class PlainUser {
public:
    PlainUser() {
        QFile script(program());
        const auto text = QStringLiteral("#!/bin/sh\n[ \"$(id -u)\" = 0 ] || exec '%1' \"$@\"\n"
                                         "exec setpriv --bounding-set=-dac_override '%1' \"$@\"\n")
                              .arg(TALVERA_PROGRAM);
        if (!script.open(QFile::WriteOnly) || script.write(text.toUtf8()) < 0 ||
            !script.setPermissions(QFile::ReadOwner | QFile::ExeOwner))
            throw std::runtime_error("no script to start the program by");
    }

    QString program() const { return m_directory.filePath("talvera"); }

private:
    QTemporaryDir m_directory;
};

} // namespace

TEST_F(SettingsEffects, hotkeyChosenByMouse_isTheOneThatRecords) {
    startAgent();
    openSettings("hotkey");
    clickOn("radio button", "Ctrl + Alt + Space");
    EXPECT_TRUE(comesToBe("radio button", "Ctrl + Alt + Space", "checked"));
    closeSettings();
    keys.press(Key::leftControl);
    keys.press(Key::leftAlt);
    keys.press(Key::onX(KEY_SPACE));
    agent->await("menu recording");
    for (const auto key : {Key::onX(KEY_SPACE), Key::leftAlt, Key::leftControl})
        keys.release(key);
    agent->await("menu idle");
}

TEST_F(SettingsEffects, tapToToggleByKeyboard_makesATapRecord) {
    startAgent();
    openSettings("hotkey");
    EXPECT_FALSE(shown("check box", "Tap to toggle").is("checked"));
    tabTo("Tap to toggle");
    tap(KEY_SPACE);
    EXPECT_TRUE(comesToBe("check box", "Tap to toggle", "checked"));
    EXPECT_TRUE(becomes("hotkeyTapToToggle", true));
    closeSettings();
    keys.tap(hotkey);
    agent->await("menu recording");
    keys.tap(hotkey);
    agent->await("menu idle");
}

TEST_F(SettingsEffects, soundByMouse_isHeardAtOnce) {
    startAgent();
    openSettings();
    Loudspeaker loudspeaker;
    choose("Sound on start", "Ping");
    EXPECT_TRUE(becomes("startSoundName", "Ping"));
    EXPECT_TRUE(loudspeaker.hearsSomething());
    chooseByKey("Sound on start", KEY_HOME);
    EXPECT_TRUE(becomes("startSoundName", "Off"));
    closeSettings();
}

TEST_F(SettingsEffects, iconByMouse_leavesTheTrayAndComesBack) {
    const Tray tray(Tray::Kind::X11);
    startAgent();
    ASSERT_TRUE(tray.waitForIcon());
    openSettings();
    clickOn("check box", "Show icon in the panel");
    EXPECT_TRUE(becomes("showMenuBarIcon", false));
    closeSettings();
    EXPECT_TRUE(eventually([] { return !X11Windows().viewable("talvera", leastIcon); }));
    openSettings();
    clickOn("check box", "Show icon in the panel");
    EXPECT_TRUE(becomes("showMenuBarIcon", true));
    closeSettings();
    EXPECT_TRUE(tray.waitForIcon());
}

TEST_F(SettingsEffects, typewriter_decidesHowTheNextTextArrives) {
    startAgent();
    openSettings();
    shown(anyRole, "Type recordings up to");
    clickOn("check box", "Typewriter on short recordings");
    EXPECT_TRUE(becomes("insertionMode", "paste"));
    EXPECT_TRUE(goesAway("Type recordings up to"));
    closeSettings();
    EXPECT_TRUE(comesInOnePiece());

    openSettings();
    tabTo("Typewriter on short recordings");
    tap(KEY_SPACE);
    EXPECT_TRUE(becomes("insertionMode", "autoByDuration"));
    tabTo("Type recordings up to");
    tap(KEY_RIGHT);
    EXPECT_TRUE(becomes("typewriterThresholdSeconds", 16));
    closeSettings();
    EXPECT_FALSE(comesInOnePiece());

    openSettings();
    tabTo("Type recordings up to");
    tap(KEY_HOME);
    EXPECT_TRUE(becomes("typewriterThresholdSeconds", 1));
    closeSettings();
    EXPECT_TRUE(comesInOnePiece()) << "takes longer than a second to say";
}

TEST_F(ProtectionEffects, focusThatIsProtectedOrNot_isSoForTheNextText) {
    startAgent({}, gate.program());
    openSettings();
    chooseByKey("When another app is in front", KEY_END);
    EXPECT_TRUE(becomes("focusProtectionMode", "clipboardOnly"));
    closeSettings();
    std::optional<Receiver> editor;
    std::optional<Receiver> other;
    dictateAndLeave(editor, other);
    agent->await("hud notice Focus changed");
    EXPECT_TRUE(clipboardBecomes(sentence));
    EXPECT_EQ(editor->text() + other->text(), "");
    other.reset();
    editor.reset();

    openSettings();
    clickOn("check box", "Protect focus target");
    EXPECT_TRUE(becomes("protectFocusTarget", false));
    EXPECT_TRUE(goesAway("When another app is in front"));
    closeSettings();
    dictateAndLeave(editor, other);
    EXPECT_TRUE(other->waitForText(sentence)) << other->text().toStdString();
    EXPECT_EQ(editor->text(), "");
    agent->await("menu idle");
}

TEST_F(SettingsEffects, languagesByMouse_areThoseOfTheNextText) {
    home.addLanguageModel(AgentHome::LanguageModel::Micro);
    startAgent();
    openSettings("language");
    choose("Source language", "English");
    EXPECT_TRUE(becomes("sourceLanguageCode", "en"));
    clickOn("check box", "Translate");
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    choose("Translate to", "German");
    EXPECT_TRUE(becomes("targetLanguageCode", "de"));
    closeSettings();
    expectTyped("Wir brauchen Butter und Papier.", spoken("We need butter and paper."));

    openSettings("language");
    clickOn("check box", "Translate");
    EXPECT_TRUE(becomes("targetLanguageCode", "off"));
    EXPECT_TRUE(goesAway("Translate to"));
    choose("Source language", "German");
    EXPECT_TRUE(becomes("sourceLanguageCode", "de"));
    closeSettings();
    expectTyped("Das Wetter ist heute schön.", spoken("Das Wetter ist heute schön.", "de"));
}

TEST_F(SettingsEffects, toneThatIsOff_leavesTheNextTextAsItWasSaid) {
    home.addLanguageModel();
    startAgent({{"aiCleanupEnabled", true}, {"sourceLanguageCode", "en"}});
    const auto speech = spoken(sentence);
    openSettings("ai");
    chooseByKey("Tone", KEY_HOME);
    EXPECT_TRUE(becomes("cleanupTone", "off"));
    closeSettings();
    expectTyped(sentence, speech);

    openSettings("ai");
    choose("Tone", "Casual");
    EXPECT_TRUE(becomes("cleanupTone", "casual"));
    closeSettings();
    expectTyped("So we meet at five.", speech);
}

TEST_F(SettingsEffects, shortcutByKeyboard_switchesTranslationUntilItIsCleared) {
    startAgent();
    openSettings("language");
    tabTo("Translate shortcut");
    tap(KEY_SPACE);
    // Armed, it says so in the place of its name.
    EXPECT_TRUE(goesAway("Translate shortcut"));
    strikeCtrlAltJ();
    EXPECT_TRUE(eventually([&] { return shown(anyRole, "Translate shortcut").description == "Ctrl+Alt+J"; }));
    agent->awaitRest(); // it watches for the new chord then
    strikeCtrlAltJ();
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    EXPECT_TRUE(comesToBe("check box", "Translate", "checked"));
    clickOn(anyRole, "Clear");
    EXPECT_TRUE(eventually([&] { return shown(anyRole, "Translate shortcut").description == "Not set"; }));
    closeSettings();
}

TEST_F(SettingsEffects, languageModelThatIsChosen_isTheOneThatAnswers) {
    home.addLanguageModel(AgentHome::LanguageModel::Micro, "clever.gguf");
    home.addLanguageModel(AgentHome::LanguageModel::OneAnswer, "one-answer.gguf");
    startAgent({{"aiCleanupEnabled", true}, {"cleanupTone", "conversational"}, {"sourceLanguageCode", "en"}});
    const auto mistaken = spoken("Write a important letter to Anna.");
    openSettings("ai");
    EXPECT_EQ(shown(anyRole, "Language model").description, "None");
    choose("Language model", "Talvera test model");
    EXPECT_TRUE(becomes("languageModel", "one-answer.gguf"));
    closeSettings();
    expectTyped("So we meet at five.", mistaken);

    openSettings("ai");
    tabTo("Language model");
    for (const auto key : {KEY_SPACE, KEY_UP, KEY_ENTER})
        tap(key);
    EXPECT_TRUE(becomes("languageModel", "clever.gguf"));
    closeSettings();
    expectTyped("Write an important letter to Anna.", mistaken);

    openSettings("ai");
    home.removeLanguageModel("clever.gguf");
    const auto isMissed = [&] {
        return shown(anyRole, "Language model").description == QString("clever.gguf – not found");
    };
    EXPECT_TRUE(eventually(isMissed));
    EXPECT_TRUE(eventually(
        [&] { return shown("label", "On this computer").description.contains("can't be found"); }));
    closeSettings();
}

TEST_F(SettingsEffects, displayLanguage_isSpokenAfterTheRestart) {
    startAgent({{"appLanguage", "en"}});
    openSettings();
    choose("Display language", "Deutsch");
    EXPECT_TRUE(becomes("appLanguage", "de"));
    clickOn(anyRole, "Restart now");
    EXPECT_EQ(agent->awaitEnd(), 0);
    std::vector<pid_t> after;
    ASSERT_TRUE(eventually([&] { return !(after = processes("talvera")).empty(); }));
    const auto german = after.front();
    ASSERT_TRUE(eventually([&] { return !ScreenReader::read(german).empty(); })); // its second start is one
    openSettings("language");
    EXPECT_TRUE(eventually([&] { return ScreenReader::find(german, "page tab", "Sprache").has_value(); }));
    ::kill(german, SIGTERM);
    EXPECT_TRUE(eventually([&] { return processes("talvera").empty(); }));
}

TEST_F(SettingsEffects, launchAtLogin_isSwitchedOnAndOffAndRefusedByAReadOnlyFolder) {
    const PlainUser user;
    startAgent({}, user.program());
    openSettings();
    EXPECT_FALSE(shown("check box", "Launch at login").is("checked"));
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(comesToBe("check box", "Launch at login", "checked"));
    EXPECT_TRUE(startsAtLogin());
    const auto isOff = [&] { return !shown("check box", "Launch at login").is("checked"); };
    tabTo("Launch at login");
    tap(KEY_SPACE);
    EXPECT_TRUE(eventually(isOff));
    EXPECT_FALSE(startsAtLogin());

    ASSERT_TRUE(QDir(autostartFolder()).removeRecursively());
    ASSERT_TRUE(QDir().mkpath(autostartFolder()));
    ASSERT_TRUE(QFile::setPermissions(autostartFolder(), QFile::ReadOwner | QFile::ExeOwner));
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(eventually([&] {
        return shown("check box", "Launch at login").description.startsWith("This couldn't be changed");
    }));
    EXPECT_TRUE(isOff());
    EXPECT_FALSE(startsAtLogin());

    ASSERT_TRUE(
        QFile::setPermissions(autostartFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(comesToBe("check box", "Launch at login", "checked"));
    EXPECT_TRUE(startsAtLogin());
    EXPECT_FALSE(shown("check box", "Launch at login").description.contains("couldn't be changed"));
    closeSettings();
}
