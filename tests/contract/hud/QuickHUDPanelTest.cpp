// SPDX-License-Identifier: MIT
// The real panel among other programs' windows, on a real X server with a real mouse.
#include "OtherWindow.h"
#include "PanelOnX11.h"
#include "RigInput.h"

#include <QGuiApplication>
#include <QProcess>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using State = DictationHUDState;

namespace {

constexpr QRect screen(0, 0, 1280, 800);
const QColor below("#30a060");

class QuickHUDPanelTest : public testing::Test {
protected:
    void show(const State& state) {
        stage.holder.state.set(state);
        stage.panel.fadeIn();
        ASSERT_TRUE(stage.awaitPaint());
    }
    void clickAt(const QPoint& place) {
        const auto onScreen = stage.geometry().topLeft() + place;
        input.pointAt(onScreen.x(), onScreen.y());
        input.pressButton();
        input.releaseButton();
    }

    PanelOnX11 stage;
    RigInput input;
};

TEST_F(QuickHUDPanelTest, show_standsAboveTheLowerEdgeInTheMiddle) {
    show(State::Transcribing{});
    const QRect expected((1280 - 560) / 2, 800 - 64 - 72, 560, 72);
    EXPECT_TRUE(eventually([&] { return stage.geometry() == expected; }));
}

TEST_F(QuickHUDPanelTest, showOverAnApplication_focusStays) {
    OtherWindow application(QRect(100, 100, 600, 600), below);
    application.activate();
    show(State::Listening{stage.actor.date()});
    EXPECT_TRUE(application.isActive());
    EXPECT_TRUE(application.hasFocus());
    stage.panel.setIgnoresMouseEvents(false);
    show(State::PermissionRequired{State::PermissionKind::Microphone});
    clickAt(QPoint(280, 36));
    stage.run(seconds(0.05));
    EXPECT_TRUE(application.isActive());
    EXPECT_TRUE(application.hasFocus());
    EXPECT_EQ(QGuiApplication::focusWindow(), nullptr);
}

TEST_F(QuickHUDPanelTest, clicks_goThrough) {
    OtherWindow application(screen, below);
    show(State::Transcribing{});
    clickAt(QPoint(280, 36));
    EXPECT_EQ(application.awaitClicks(1), 1);
}

TEST_F(QuickHUDPanelTest, card_takesTheClicksOnItsButtons) {
    OtherWindow application(screen, below);
    std::string done;
    stage.panel.setIgnoresMouseEvents(false);
    stage.holder.permissionOpenSettings = [&] { done += "opened "; };
    stage.holder.permissionDismiss = [&] { done += "dismissed "; };
    show(State::PermissionRequired{State::PermissionKind::Accessibility});
    clickAt(QPoint(200, 36));
    EXPECT_TRUE(eventually([&] { return done == "opened "; })) << done;
    clickAt(QPoint(560 - 16 - 14, 36));
    EXPECT_TRUE(eventually([&] { return done == "opened dismissed "; })) << done;
    stage.panel.setIgnoresMouseEvents(true);
    clickAt(QPoint(200, 36));
    EXPECT_EQ(application.awaitClicks(1), 1);
    EXPECT_EQ(done, "opened dismissed ");
}

TEST_F(QuickHUDPanelTest, fullScreenWindowBelow_isShownAboveIt) {
    OtherWindow game(screen, below, {.fullScreen = true});
    game.activate();
    show(State::Transcribing{});
    EXPECT_TRUE(game.isActive());
}

TEST_F(QuickHUDPanelTest, fullScreenWindowThatComesUpMeanwhile_comesUpBelow) {
    show(State::Transcribing{});
    OtherWindow game(screen, below, {.fullScreen = true});
    game.activate();
    EXPECT_TRUE(stage.awaitPaint());
}

TEST_F(QuickHUDPanelTest, corners_showWhatLiesBelow) {
    OtherWindow application(screen, below);
    application.activate();
    show(State::PermissionRequired{State::PermissionKind::Microphone});
    for (const auto corner : {QPoint(0, 0), QPoint(559, 0), QPoint(0, 71), QPoint(559, 71)})
        EXPECT_EQ(stage.pixel(corner), below);
    show(State::Transcribing{});
    EXPECT_TRUE(eventually([&] { return stage.pixel(QPoint(20, 36)) == below; }));
}

TEST_F(QuickHUDPanelTest, plane_shinesThroughAndFadesWhereThereIsACompositor) {
    const bool composited = stage.desktop.isComposited.get();
    OtherWindow application(screen, Qt::black);
    application.activate();
    show(State::Transcribing{});
    const auto plane = stage.views.theme().property("overlay").value<QColor>();
    const auto opaque = stage.views.theme().property("overlayOpaque").value<QColor>();
    const int shown = composited ? int(plane.red() * plane.alphaF()) : opaque.red();
    const QPoint place(280, 36 + 20);
    EXPECT_TRUE(eventually([&] { return std::abs(stage.pixel(place).red() - shown) <= 3; }));

    bool between = false;
    bool gone = false;
    stage.panel.fadeOut([&] { gone = true; });
    EXPECT_TRUE(eventually([&] {
        const int red = stage.pixel(place).red();
        between = between || (red > 20 && red < 220);
        return gone;
    }));
    EXPECT_EQ(between, composited);
    EXPECT_TRUE(eventually([&] { return stage.pixel(place) == QColor(Qt::black); }));
}

TEST_F(QuickHUDPanelTest, windowManager_knowsNothingOfIt) {
    OtherWindow application(QRect(0, 0, 100, 100), below);
    show(State::Transcribing{});
    const auto managed = application.connection().property(application.connection().root(),
                                                           application.connection().atom("_NET_CLIENT_LIST"));
    EXPECT_EQ(std::count(managed.begin(), managed.end(), application.id()), 1);
    EXPECT_EQ(std::count(managed.begin(), managed.end(), stage.panel.window().winId()), 0);
}

TEST_F(QuickHUDPanelTest, panelAtTheLowerEdge_standsAboveIt) {
    OtherWindow dock(QRect(0, 760, 1280, 40), Qt::black, {.bottomStrut = 40});
    show(State::Transcribing{});
    EXPECT_TRUE(eventually([&] { return stage.geometry().bottom() + 1 == 800 - 40 - 64; }));
}

TEST_F(QuickHUDPanelTest, severalMonitors_standsOnTheOneWithTheFocusedWindow) {
    const auto xrandr = [](const QStringList& arguments) { return QProcess::execute("xrandr", arguments); };
    ASSERT_EQ(xrandr({"--setmonitor", "left", "640/170x800/210+0+0", "DUMMY0", "--setmonitor", "right",
                      "640/170x800/210+640+0", "none"}),
              0);
    for (const int left : {0, 640}) {
        OtherWindow application(QRect(left + 50, 50, 300, 300), below);
        application.activate();
        show(State::Transcribing{});
        EXPECT_TRUE(eventually([&] {
            const int monitor = application.middle().x() < 640 ? 0 : 640;
            return stage.geometry().center().x() == QRect(monitor, 0, 640, 800).center().x();
        })) << left;
        bool gone = false;
        stage.panel.fadeOut([&] { gone = true; });
        EXPECT_TRUE(eventually([&] { return gone; }));
    }
    xrandr({"--delmonitor", "left", "--delmonitor", "right"});
}

} // namespace
