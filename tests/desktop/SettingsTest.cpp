// SPDX-License-Identifier: MIT
// The settings window on a desktop: how it comes and goes, and what changes in it do to the program.
#include "PanelTest.h"
#include "X11Windows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <linux/input-event-codes.h>

using namespace talvera::test;

namespace {

constexpr QSize leastSettings{500, 350}; ///< larger than the panel and the HUD

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
    bool comesToBe(const QString& name, const QString& state) const {
        return eventually([&] {
            const auto found = ScreenReader::find(agent->pid(), "check box", name);
            return found && found->is(state);
        });
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
    shown("combo box", "Source language");
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
    EXPECT_TRUE(panelGoes() || settings());
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
    EXPECT_TRUE(eventually([&] { return shown("radio button", "Ctrl + Alt + Space").is("checked"); }));
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
    // From the sidebar backwards: the last control of the section is the first that is reached.
    for (int i = 0; i < 2; ++i) {
        keys.press(Key::leftShift);
        tap(KEY_TAB);
        keys.release(Key::leftShift);
    }
    tap(KEY_SPACE);
    EXPECT_TRUE(comesToBe("Tap to toggle", "checked"));
    EXPECT_TRUE(becomes("hotkeyTapToToggle", true));
    closeSettings();
    keys.tap(hotkey);
    agent->await("menu recording");
    keys.tap(hotkey);
    agent->await("menu idle");
}

TEST_F(Settings, choicesByMouse_areStored) {
    startAgent();
    openSettings();
    clickOn("combo box", "Sound on start");
    clickOn("list item", "Ping");
    EXPECT_TRUE(becomes("startSoundName", "Ping"));
    clickOn("check box", "Typewriter on short recordings");
    EXPECT_TRUE(becomes("insertionMode", "paste"));
    clickOn("page tab", "Language");
    clickOn("check box", "Translate");
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    clickOn("combo box", "Source language");
    clickOn("list item", "German");
    EXPECT_TRUE(becomes("sourceLanguageCode", "de"));
    clickOn("page tab", "AI cleanup");
    clickOn("combo box", "Tone");
    clickOn("list item", "Casual");
    EXPECT_TRUE(becomes("cleanupTone", "casual"));
    closeSettings();
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
    EXPECT_TRUE(comesToBe("Launch at login", "checked"));
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
        clickOn("page tab", section);
        EXPECT_TRUE(eventually([&] { return shown("page tab", section).is("selected"); }));
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
