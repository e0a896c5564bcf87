// SPDX-License-Identifier: MIT
// The real panel of the tray over other programs' windows, on a real X server.
#include "views/panel/QuickMenuPanel.h"
#include "OtherWindow.h"
#include "PanelFixture.h"
#include "RigInput.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/panel/menuPanelFrame.h"
#include "views/ViewEngine.h"
#include "views/controls/Shadow.h"
#include "views/panel/KeyablePanel.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QQuickItem>
#include <QScreen>

#include <functional>

using namespace talvera;
using namespace talvera::test;

namespace {

const QColor below("#30a060");

class QuickMenuPanelTest : public PanelTest {
protected:
    void open(const QPoint& place) {
        panel.renewContent();
        panel.fadeIn(QRect(place, QSize(300, panel.fittingHeight())));
    }
    bool isPainted() {
        const auto plane = views.theme().property("overlayOpaque").value<QColor>();
        return eventually([&] { return panel.window().opacity() == 1 && pixel(QPoint(150, 4)) == plane; });
    }
    void close() {
        panel.fadeOut();
        ASSERT_TRUE(eventually([&] { return !panel.isVisible(); }));
    }
    /// The rows that show that the pointer is over them.
    int litRows() {
        const std::function<int(const QQuickItem&)> count = [&](const QQuickItem& item) {
            int lit = item.property("hovered").toBool() ? 1 : 0;
            for (const auto* child : item.childItems())
                lit += count(*child);
            return lit;
        };
        return count(*panel.window().contentItem());
    }
    QColor pixel(const QPoint& place) {
        const auto onScreen = panel.frame().topLeft() + place;
        const auto picture =
            QGuiApplication::primaryScreen()->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1);
        return picture.toImage().pixelColor(0, 0);
    }

    MenuPanelModel model{{menuBar, settings, stats, readiness, languageModel, layout, toggle}};
    DesktopAppearance appearance;
    ViewEngine views{appearance};
    X11PanelDesktop desktop{X11Server()};
    QuickMenuPanel panel{views, model, desktop};
};

TEST_F(QuickMenuPanelTest, corners_showWhatLiesBelowEachTimeItOpens) {
    OtherWindow application(QRect(0, 0, 1280, 800), below);
    // In the shadow, if there is one, but the window's own colour is not there.
    const auto isBelow = [this](const QColor& seen) {
        return desktop.isComposited() ? seen.green() <= below.green() && seen.red() < below.red() + 20
                                      : seen == below;
    };
    for (const QPoint place : {QPoint(100, 100), QPoint(600, 60), QPoint(200, 80)}) {
        open(place);
        ASSERT_TRUE(isPainted());
        const int right = panel.frame().width() - 1;
        const int bottom = panel.frame().height() - 1;
        for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
            EXPECT_TRUE(eventually([&] { return isBelow(pixel(corner)); })) << place.x();
        close();
    }
}

TEST_F(QuickMenuPanelTest, rowUnderThePointerAtTheEnd_isNotLitTheNextTime) {
    RigInput input;
    input.pointAt(10, 700);
    open(QPoint(100, 100));
    ASSERT_TRUE(isPainted());
    const auto frame = panel.frame();
    input.pointAt(frame.center().x(), frame.bottom() - 60);
    ASSERT_TRUE(eventually([&] { return litRows() == 1; }));
    close();
    input.pointAt(10, 700);
    open(QPoint(100, 100));
    ASSERT_TRUE(isPainted());
    EXPECT_EQ(litRows(), 0);
    input.pointAt(frame.center().x(), frame.bottom() - 20);
    EXPECT_TRUE(eventually([&] { return litRows() == 1; }));
}

TEST_F(QuickMenuPanelTest, shadow_liesAroundItWhereThereIsACompositor) {
    OtherWindow application(QRect(0, 0, 1280, 800), below);
    open(QPoint(400, 100));
    ASSERT_TRUE(isPainted());
    const auto greenBelowIt = [&](int distance) {
        return pixel(QPoint(150, panel.frame().height() - 1 + distance)).green();
    };
    EXPECT_EQ(panel.frame().topLeft(), QPoint(400, 100));
    EXPECT_EQ(greenBelowIt(Shadow::reach + 8), below.green());
    if (desktop.isComposited()) {
        EXPECT_LT(greenBelowIt(2), below.green() - 15);
        EXPECT_LT(greenBelowIt(2), greenBelowIt(12));
    } else {
        EXPECT_EQ(greenBelowIt(2), below.green());
    }
    RigInput input;
    input.click(panel.frame().center().x(), panel.frame().bottom() + 8);
    EXPECT_EQ(application.awaitClicks(1), 1) << "the shadow takes clicks";
}

/// At every scale: see CMakeLists.txt.
class MenuPanelPlace : public QuickMenuPanelTest {};

TEST_F(MenuPanelPlace, window_isAsLargeAsWasAskedFor) {
    for (const QSize& size : {QSize(300, 317), QSize(300, 318), QSize(300, 319)}) {
        panel.renewContent();
        const QRect frame(QPoint(90, 61), size);
        panel.fadeIn(frame);
        ASSERT_TRUE(isPainted());
        EXPECT_TRUE(eventually([&] { return panel.frame() == frame; }));
        close();
    }
}

TEST_F(MenuPanelPlace, severalMonitors_opensOnTheOneWithTheItem) {
    const auto xrandr = [](const QStringList& arguments) { return QProcess::execute("xrandr", arguments); };
    ASSERT_EQ(xrandr({"--setmonitor", "left", "640/170x800/210+0+0", "DUMMY0", "--setmonitor", "right",
                      "640/170x800/210+640+0", "none"}),
              0);
    ASSERT_TRUE(eventually([] { return QGuiApplication::screens().size() == 2; }));
    for (auto* screen : QGuiApplication::screens()) {
        const QRect item(screen->geometry().topRight() - QPoint(30, 0), QSize(22, 22));
        panel.renewContent();
        panel.fadeIn(menuPanelFrame(item, panel.screenOf(item), panel.fittingHeight()));
        ASSERT_TRUE(isPainted());
        EXPECT_TRUE(screen->geometry().contains(panel.frame()));
        EXPECT_EQ(panel.frame().right(), screen->geometry().right() - menuPanelGap);
        close();
    }
    xrandr({"--delmonitor", "left", "--delmonitor", "right"});
}

} // namespace
