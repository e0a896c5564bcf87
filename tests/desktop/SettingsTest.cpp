// SPDX-License-Identifier: MIT
// The settings window on a desktop: how it comes and goes, what a screen reader hears of it, and what a
// report needs.
#include "SettingsOnScreen.h"

#include <QProcess>
#include <QSet>

#include <linux/input-event-codes.h>

using namespace talvera::test;

namespace {

class Settings : public SettingsOnScreen {
protected:
    void goToSection(const QString& title) {
        clickOn("page tab", title);
        ASSERT_TRUE(comesToBe("page tab", title, "selected"));
    }
};

const QStringList sections{"General", "Hotkey", "Language", "AI cleanup", "Privacy", "About Talvera"};

/// "button" instead of "push button" since Qt 6.8.
const QStringList controlRoles{"push button", "button",   "check box",    "combo box", "list item",
                               "list",        "page tab", "radio button", "slider"};

bool isControl(const ScreenReader::Element& element) {
    return controlRoles.contains(element.role) || element.is("focusable");
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

TEST_F(Settings, screenReader_findsANameForEveryControlOfEverySection) {
    startAgent({{"targetLanguageCode", "en"}});
    openSettings();
    for (const auto& section : sections) {
        goToSection(section);
        int controls = 0;
        for (const auto& element : ScreenReader::read(agent->pid())) {
            if (!isControl(element))
                continue;
            ++controls;
            EXPECT_NE(element.name, "") << section.toStdString() << ": " << element.role.toStdString();
        }
        EXPECT_GE(controls, 6) << section.toStdString();
    }
    closeSettings();
}

TEST_F(Settings, tabKey_leadsAScreenReaderThroughEverySection) {
    startAgent({{"targetLanguageCode", "en"}});
    openSettings();
    for (const auto& section : sections) {
        goToSection(section);
        QSet<QString> heard;
        for (auto now = tabOn(section); !heard.contains(now.name) && heard.size() < 40;
             now = tabOn(now.name)) {
            EXPECT_NE(now.name, "") << section.toStdString() << ": " << now.role.toStdString();
            EXPECT_TRUE(controlRoles.contains(now.role))
                << section.toStdString() << ": " << now.name.toStdString() << " is a "
                << now.role.toStdString();
            heard.insert(now.name);
        }
        EXPECT_TRUE(heard.contains(section)) << "comes round";
        EXPECT_GE(heard.size(), 6) << section.toStdString();
    }
    closeSettings();
}

TEST_F(Settings, copiedDetails_tellOfTheComputerAndNotOfWhatWasSaid) {
    startAgent();
    expectTyped("Please send the report tomorrow.", spoken("Please send the report tomorrow."));
    openSettings();
    clickOn("page tab", "About Talvera");
    clickOn(anyRole, "Copy details for a report");
    shown("label", "Copied to the clipboard.");
    const auto details = clipboard();
    for (const auto* fact : {"Talvera: ", "System: ", "Kernel: ", "Qt: ", "Desktop: ", "Session: ",
                             "Screens: ", "Recognition: on the ", "Sound server: ", "Microphone: "})
        EXPECT_TRUE(details.contains(fact)) << fact << " is missing in:\n" << details.toStdString();
    for (const auto* word : {"please", "send", "report", "tomorrow"})
        EXPECT_FALSE(details.contains(word, Qt::CaseInsensitive)) << details.toStdString();
    closeSettings();
}
