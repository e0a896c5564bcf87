// SPDX-License-Identifier: MIT
// The item in a real tray and the panel at it, used by mouse and by keyboard.
#include "DesktopTest.h"
#include "Tray.h"
#include "X11Windows.h"

#include <QFile>
#include <QJsonDocument>

using namespace talvera::test;

namespace {

// X keycodes
constexpr int Escape = 9;
constexpr int Tab = 23;
constexpr int Return = 36;
constexpr int E = 26;
constexpr int N = 57;
constexpr int G = 42;

constexpr QSize leastPanel{250, 100}; ///< larger than an icon, narrower than the HUD's window

class PanelTest : public DesktopTest {
protected:
    static std::optional<QRect> panel() { return X11Windows().viewable("talvera", leastPanel); }
    /// … and has the keyboard.
    static bool panelComes() {
        return eventually([] {
            const auto frame = panel();
            return frame && X11Windows().hasKeyboard(*frame);
        });
    }
    static bool panelGoes() {
        return eventually([] { return !panel().has_value(); });
    }

    void click(QPoint place) {
        keys.pointAt(place.x(), place.y());
        keys.pressButton();
        keys.releaseButton();
    }

    /// What is stored under this key by now.
    QJsonValue stored(const QString& key) const {
        QFile file(home.preferencesFile());
        file.open(QFile::ReadOnly);
        return QJsonDocument::fromJson(file.readAll()).object()["preferences"].toObject().value(key);
    }
    bool becomes(const QString& key, const QJsonValue& value) const {
        return eventually([&] { return stored(key) == value; });
    }
};

class StatusPanel : public PanelTest, public testing::WithParamInterface<Tray::Kind> {
protected:
    void openPanel() {
        tray.emplace(GetParam());
        startAgent();
        ASSERT_TRUE(tray->waitForIcon());
        click(tray->icon());
        ASSERT_TRUE(panelComes());
    }

    std::optional<Tray> tray;
};

} // namespace

TEST_P(StatusPanel, clickOnTheItem_opensThePanelAtItAndTheNextOneCloses) {
    openPanel();
    const auto icon = tray->icon();
    const auto frame = *panel();
    EXPECT_EQ(frame.width(), 300);
    EXPECT_LE(frame.left(), icon.x());
    EXPECT_GE(frame.right(), icon.x());
    EXPECT_FALSE(frame.contains(icon));
    click(icon);
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, pressElsewhere_closes) {
    openPanel();
    click({900, 400});
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, escape_closes) {
    openPanel();
    keys.tap(Escape);
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, keyboardAlone_choosesALanguageAndSwitchesCleanUp) {
    openPanel();
    keys.tap(Tab);
    keys.tap(Return); // opens the list, and its search has the keyboard
    for (const int key : {E, N, G})
        keys.tap(key);
    keys.tap(Return);
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    keys.tap(Tab);
    keys.tap(Return);
    EXPECT_TRUE(becomes("aiCleanupEnabled", true));
    EXPECT_TRUE(panel().has_value());
}

INSTANTIATE_TEST_SUITE_P(Trays, StatusPanel, testing::Values(Tray::Kind::X11, Tray::Kind::DBus),
                         [](const auto& tray) { return tray.param == Tray::Kind::X11 ? "X11" : "DBus"; });

namespace {

class NoTray : public PanelTest {};

} // namespace

TEST_F(NoTray, secondStart_opensThePanel) {
    startAgent();
    QProcess second;
    second.setProcessEnvironment(home.environment());
    second.start(TALVERA_PROGRAM, QStringList());
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(panelComes());
    keys.tap(Escape);
    EXPECT_TRUE(panelGoes());
}
