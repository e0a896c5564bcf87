// SPDX-License-Identifier: MIT
#include "FakeSettingsPanels.h"
#include "RecordingConsole.h"
#include "linux/xdg/DesktopSettingsPanels.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace talvera;
using namespace std::chrono_literals;
using Panel = SettingsPanels::Panel;

namespace {

/// A desktop on which stand-ins for these programs are installed. Each writes down how it was called.
class DesktopSettingsPanelsTest : public testing::Test {
protected:
    void install(const QStringList& programs) {
        for (const auto& program : programs) {
            QFile file(m_directory.filePath(program));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("#!/bin/sh\necho ${0##*/} \"$@\" >'" + calls().toUtf8() + ".new' && mv '" +
                       calls().toUtf8() + ".new' '" + calls().toUtf8() + "'\n");
            file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        }
    }

    /// What was called; waits for it.
    QString opened(Panel panel, const char* desktops) {
        QFile::remove(calls());
        DesktopSettingsPanels panels(
            {QString::fromLatin1(desktops).split(u':', Qt::SkipEmptyParts), {m_directory.path()}}, console);
        if (!panels.open(panel))
            return {};
        QFile file(calls());
        for (int i = 0; i < 1000 && !file.open(QIODevice::ReadOnly); ++i)
            std::this_thread::sleep_for(10ms);
        return QString::fromUtf8(file.readAll()).trimmed();
    }

    test::RecordingConsole console;

private:
    QString calls() const { return m_directory.filePath(QStringLiteral("calls")); }

    QTemporaryDir m_directory;
};

TEST_F(DesktopSettingsPanelsTest, gnome_opensItsPanels) {
    install({"gnome-control-center", "pavucontrol", "systemsettings"});
    EXPECT_EQ(opened(Panel::Microphone, "GNOME"), "gnome-control-center sound");
    EXPECT_EQ(opened(Panel::Accessibility, "ubuntu:GNOME"), "gnome-control-center universal-access");
    EXPECT_EQ(opened(Panel::Keyboard, "GNOME"), "gnome-control-center keyboard");
}

TEST_F(DesktopSettingsPanelsTest, kde_opensItsPanelsUnderTheirNewOrOldName) {
    install({"kcmshell5", "gnome-control-center"});
    EXPECT_EQ(opened(Panel::Microphone, "KDE"), "kcmshell5 kcm_pulseaudio");
    install({"systemsettings5"});
    EXPECT_EQ(opened(Panel::Microphone, "KDE"), "systemsettings5 kcm_pulseaudio");
    install({"systemsettings"});
    EXPECT_EQ(opened(Panel::Microphone, "KDE"), "systemsettings kcm_pulseaudio");
    EXPECT_EQ(opened(Panel::Accessibility, "KDE"), "systemsettings kcm_access");
    EXPECT_EQ(opened(Panel::Keyboard, "KDE"), "systemsettings kcm_keyboard");
}

TEST_F(DesktopSettingsPanelsTest, xfce_opensTheMixersInputsAndItsPanel) {
    install({"pavucontrol", "xfce4-accessibility-settings"});
    EXPECT_EQ(opened(Panel::Microphone, "XFCE"), "pavucontrol --tab=4");
    EXPECT_EQ(opened(Panel::Accessibility, "XFCE"), "xfce4-accessibility-settings");
}

TEST_F(DesktopSettingsPanelsTest, desktopThatNobodyKnows_getsAMixer) {
    install({"pavucontrol-qt"});
    EXPECT_EQ(opened(Panel::Microphone, "Nobody"), "pavucontrol-qt --tab=4");
    EXPECT_EQ(opened(Panel::Microphone, ""), "pavucontrol-qt --tab=4");
}

TEST_F(DesktopSettingsPanelsTest, panelThatIsNotInstalled_isReplacedByAMixer) {
    install({"pwvucontrol"});
    EXPECT_EQ(opened(Panel::Microphone, "GNOME"), "pwvucontrol");
}

TEST_F(DesktopSettingsPanelsTest, emptyDesktop_saysWhereToLook) {
    EXPECT_EQ(opened(Panel::Microphone, "GNOME"), QString());
    EXPECT_EQ(console.logged().size(), 1);
    EXPECT_EQ(opened(Panel::Accessibility, ""), QString());
    EXPECT_EQ(console.logged().size(), 2);
    EXPECT_EQ(opened(Panel::LanguageModel, "GNOME"), QString());
    EXPECT_EQ(console.logged().size(), 3);
    EXPECT_EQ(opened(Panel::Keyboard, ""), QString());
    EXPECT_EQ(console.logged().size(), 4);
}

TEST_F(DesktopSettingsPanelsTest, candidates_ofSeveralDesktopsComeInTheirOrderAndOnce) {
    const auto commands = DesktopSettingsPanels::candidates(Panel::Microphone, {"Budgie", "GNOME"});
    ASSERT_GE(commands.size(), 3U);
    EXPECT_EQ(commands[0].front(), "budgie-control-center");
    EXPECT_EQ(commands[1].front(), "gnome-control-center");
    EXPECT_EQ(commands[2].front(), "pavucontrol");
}

TEST(FakeSettingsPanels, panel_isRemembered) {
    test::FakeSettingsPanels panels;
    EXPECT_TRUE(panels.open(Panel::Accessibility));
    EXPECT_EQ(panels.opened, std::vector{Panel::Accessibility});
    panels.hasPanels = false;
    EXPECT_FALSE(panels.open(Panel::Microphone));
}

} // namespace
