// SPDX-License-Identifier: MIT
// The real panel of the tray over other programs' windows, on a real X server.
#include "views/panel/QuickMenuPanel.h"
#include "OtherWindow.h"
#include "PanelFixture.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/panel/MenuPanelModel.h"
#include "views/ViewEngine.h"
#include "views/panel/KeyablePanel.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

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
    const auto plane = views.theme().property("overlayOpaque").value<QColor>();
    for (const QPoint place : {QPoint(100, 100), QPoint(600, 60), QPoint(200, 80)}) {
        open(place);
        ASSERT_TRUE(eventually([&] { return pixel(QPoint(150, 4)) == plane; }));
        const int right = panel.frame().width() - 1;
        const int bottom = panel.frame().height() - 1;
        for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
            EXPECT_TRUE(eventually([&] { return pixel(corner) == below; })) << place.x();
        panel.fadeOut();
        ASSERT_TRUE(eventually([&] { return !panel.isVisible(); }));
    }
}

} // namespace
