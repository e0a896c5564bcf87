// SPDX-License-Identifier: MIT
// The settings window on a desktop: how it comes and goes, and what changes in it do to the program.
#include "Loudspeaker.h"
#include "PanelTest.h"
#include "Tray.h"
#include "X11Windows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <stdexcept>

#include <linux/input-event-codes.h>

#include <csignal>

using namespace talvera::test;

namespace {

constexpr QSize leastSettings{500, 350}; ///< larger than the panel and the HUD
constexpr QSize leastIcon{8, 8};

class Settings : public PanelTest {
protected:
    static std::optional<QRect> settings() { return X11Windows().viewable("talvera", leastSettings); }
    static bool settingsCome() {
        return eventually([] {
            const auto frame = settings();
            return frame && X11Windows().hasKeyboard(*frame);
        });
    }
    static bool settingsGo() {
        return eventually([] { return !settings().has_value(); });
    }

    /// Starts the program once more with these arguments; its exit status.
    int startWith(const QStringList& arguments) const {
        QProcess second;
        second.setProcessEnvironment(home.environment());
        second.start(TALVERA_PROGRAM, arguments);
        return second.waitForFinished(30000) ? second.exitCode() : -1;
    }
    void openSettings(const QString& section = {}) {
        const auto arguments =
            section.isEmpty() ? QStringList{"--settings"} : QStringList{"--settings", section};
        ASSERT_EQ(startWith(arguments), 0);
        ASSERT_TRUE(settingsCome());
    }
    void closeSettings() {
        keys.tap(Key::escape);
        ASSERT_TRUE(settingsGo());
    }

    void tap(int evdevKey) { keys.tap(Key::onX(evdevKey)); }
    void tapWithControl(int evdevKey) {
        keys.press(Key::leftControl);
        tap(evdevKey);
        keys.release(Key::leftControl);
    }
    void strikeCtrlAltJ() {
        keys.press(Key::leftControl);
        keys.press(Key::leftAlt);
        tap(KEY_J);
        keys.release(Key::leftAlt);
        keys.release(Key::leftControl);
    }
    bool comesToBe(const QString& role, const QString& name, const QString& state) const {
        return eventually([&] {
            const auto found = ScreenReader::find(agent->pid(), role, name);
            return found && found->is(state);
        });
    }
    bool goesAway(const QString& name) const {
        return eventually([&] { return !ScreenReader::find(agent->pid(), anyRole, name); });
    }
    void goToSection(const QString& title) {
        clickOn("page tab", title);
        ASSERT_TRUE(comesToBe("page tab", title, "selected"));
    }
    void choose(const QString& control, const QString& option) {
        clickOn("combo box", control);
        clickOn("list item", option);
    }

    /// What has the keyboard, as screen readers say it.
    QString focused() const {
        QString name;
        for (const auto& element : ScreenReader::read(agent->pid())) {
            if (element.is("focused"))
                name = element.name; // the innermost comes last
        }
        return name;
    }
    /// Goes on by the Tab key until this has the keyboard.
    void tabTo(const QString& name) {
        constexpr int more = 24; // than a section and the sidebar have controls
        auto now = focused();
        for (int i = 0; i < more && now != name; ++i) {
            const auto before = now;
            tap(KEY_TAB);
            eventually([&] { return (now = focused()) != before; });
        }
        if (now != name)
            throw std::runtime_error("the Tab key doesn't get to " + name.toStdString());
    }
    /// Chooses by the keyboard in the list that has it: the first or the last option.
    void chooseByKey(const QString& control, int evdevKey) {
        tabTo(control);
        for (const auto key : {KEY_SPACE, evdevKey, KEY_ENTER})
            tap(key);
    }
    /// Says this with an editor in front, and expects that in it.
    void expectTyped(const QString& written, const Samples& speech) {
        Receiver editor(Receiver::Kind::Gtk);
        holdAndSay(speech);
        EXPECT_TRUE(editor.waitForText(written)) << editor.text().toStdString();
        agent->await("menu idle");
    }
    QString autostartFolder() const {
        return QFileInfo(home.preferencesFile()).dir().filePath("../autostart");
    }
};

bool isControl(const ScreenReader::Element& element) {
    static const QStringList roles{"push button", "check box",    "combo box", "list item",
                                   "page tab",    "radio button", "slider"};
    return roles.contains(element.role) || element.is("focusable");
}

} // namespace

TEST_F(Settings, secondStart_opensTheSectionThatItAsksFor) {
    startAgent();
    openSettings("language");
    EXPECT_TRUE(shown("page tab", "Language").is("selected"));
    shown(anyRole, "Source language");
    EXPECT_EQ(startWith({"--settings", "privacy"}), 0);
    shown("label", "No analytics, no accounts required.");
    EXPECT_NE(startWith({"--settings", "colours"}), 0);
    closeSettings();
    EXPECT_FALSE(panel().has_value());
}

TEST_F(Settings, firstStartForTheSettings_opensThem) {
    startAgent();
    EXPECT_EQ(agent->end(), 0);
    QProcess first;
    auto environment = home.environment();
    environment.remove("TALVERA_TRACE");
    first.setProcessEnvironment(environment);
    first.start(TALVERA_PROGRAM, {"--settings", "ai"});
    EXPECT_TRUE(settingsCome());
    keys.tap(Key::escape);
    EXPECT_TRUE(settingsGo());
    first.terminate();
    EXPECT_TRUE(first.waitForFinished(30000));
}

TEST_F(Settings, rowOfThePanel_opensThem) {
    startAgent();
    openPanel();
    clickOn("push button", "Settings…");
    EXPECT_TRUE(settingsCome());
    EXPECT_TRUE(shown("page tab", "General").is("selected"));
    closeSettings();
}

TEST_F(Settings, ctrlCommaInThePanel_opensThemAndCtrlWCloses) {
    startAgent();
    openPanel();
    tapWithControl(KEY_COMMA);
    EXPECT_TRUE(settingsCome());
    tapWithControl(KEY_W);
    EXPECT_TRUE(settingsGo());
}

TEST_F(Settings, hotkeyChosenByMouse_isTheOneThatRecords) {
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

TEST_F(Settings, tapToToggleByKeyboard_makesATapRecord) {
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

TEST_F(Settings, generalByMouse_isStoredAndActs) {
    startAgent();
    openSettings();
    Loudspeaker loudspeaker;
    choose("Sound on start", "Ping");
    EXPECT_TRUE(becomes("startSoundName", "Ping"));
    EXPECT_TRUE(loudspeaker.hearsSomething());
    shown(anyRole, "Type recordings up to");
    clickOn("check box", "Typewriter on short recordings");
    EXPECT_TRUE(becomes("insertionMode", "paste"));
    EXPECT_TRUE(goesAway("Type recordings up to"));
    closeSettings();
}

TEST_F(Settings, iconByMouse_leavesTheTrayAndComesBack) {
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

TEST_F(Settings, generalByKeyboard_isStored) {
    startAgent();
    openSettings();
    tabTo("Type recordings up to");
    tap(KEY_RIGHT);
    EXPECT_TRUE(becomes("typewriterThresholdSeconds", 16));
    chooseByKey("When another app is in front", KEY_END);
    EXPECT_TRUE(becomes("focusProtectionMode", "clipboardOnly"));
    tabTo("Protect focus target");
    tap(KEY_SPACE);
    EXPECT_TRUE(becomes("protectFocusTarget", false));
    EXPECT_TRUE(goesAway("When another app is in front"));
    chooseByKey("Sound on start", KEY_HOME);
    EXPECT_TRUE(becomes("startSoundName", "Off"));
    closeSettings();
}

TEST_F(Settings, languagesByMouse_areStored) {
    startAgent();
    openSettings("language");
    choose("Source language", "German");
    EXPECT_TRUE(becomes("sourceLanguageCode", "de"));
    clickOn("check box", "Translate");
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    choose("Translate to", "French");
    EXPECT_TRUE(becomes("targetLanguageCode", "fr"));
    clickOn("check box", "Translate");
    EXPECT_TRUE(becomes("targetLanguageCode", "off"));
    EXPECT_TRUE(goesAway("Translate to"));
    closeSettings();
}

TEST_F(Settings, shortcutByKeyboard_switchesTranslationUntilItIsCleared) {
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

TEST_F(Settings, toneByMouseAndKeyboard_isStored) {
    startAgent();
    openSettings("ai");
    choose("Tone", "Casual");
    EXPECT_TRUE(becomes("cleanupTone", "casual"));
    chooseByKey("Tone", KEY_HOME);
    EXPECT_TRUE(becomes("cleanupTone", "off"));
    closeSettings();
}

TEST_F(Settings, languageModelThatIsChosen_isTheOneThatAnswers) {
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
    EXPECT_TRUE(shown("label", "On this computer").description.contains("is off"));
    closeSettings();
}

TEST_F(Settings, displayLanguage_isSpokenAfterTheRestart) {
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

TEST_F(Settings, launchAtLogin_writesItsEntryAndIsToldWhereItCant) {
    startAgent();
    openSettings();
    const auto entry = autostartFolder() + "/talvera.desktop";
    const auto starts = [&] {
        QFile file(entry);
        return file.open(QFile::ReadOnly) && !file.readAll().contains("Hidden=true");
    };
    EXPECT_FALSE(shown("check box", "Launch at login").is("checked"));
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(comesToBe("check box", "Launch at login", "checked"));
    EXPECT_TRUE(starts());
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(eventually([&] { return !shown("check box", "Launch at login").is("checked"); }));
    EXPECT_FALSE(starts());
    // Not even root can make a folder where a file is.
    ASSERT_TRUE(QDir(autostartFolder()).removeRecursively());
    QFile inTheWay(QDir::cleanPath(autostartFolder()));
    ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    clickOn("check box", "Launch at login");
    EXPECT_TRUE(eventually([&] {
        return shown("check box", "Launch at login").description.startsWith("This couldn't be changed");
    }));
    EXPECT_FALSE(shown("check box", "Launch at login").is("checked"));
    closeSettings();
}

TEST_F(Settings, screenReader_findsANameForEveryControlOfEverySection) {
    startAgent({{"targetLanguageCode", "en"}});
    openSettings();
    for (const auto* section : {"General", "Hotkey", "Language", "AI cleanup", "Privacy", "About Talvera"}) {
        goToSection(section);
        int controls = 0;
        for (const auto& element : ScreenReader::read(agent->pid())) {
            if (!isControl(element))
                continue;
            ++controls;
            EXPECT_NE(element.name, "") << section << ": " << element.role.toStdString();
        }
        EXPECT_GE(controls, 6) << section;
    }
    closeSettings();
}

TEST_F(Settings, copiedDetails_arriveInTheClipboard) {
    startAgent();
    openSettings();
    clickOn("page tab", "About Talvera");
    clickOn(anyRole, "Copy details for a report");
    shown("label", "Copied to the clipboard.");
    closeSettings();
}
