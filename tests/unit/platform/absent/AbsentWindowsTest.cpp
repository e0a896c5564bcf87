// SPDX-License-Identifier: MIT
// A session that tells nothing of its windows and lets none of ours be more than an ordinary one.
#include "platform/absent/NoOverlayDesktop.h"
#include "platform/absent/NoPanelDesktop.h"
#include "platform/absent/NoPointerMonitor.h"
#include "platform/absent/NoTrayIcon.h"
#include "platform/absent/NoWorkspace.h"

#include <QGuiApplication>
#include <QWindow>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace talvera;

namespace {

class AbsentWindows : public testing::Test {
protected:
    const bool isOffscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argumentCount = 1;
    char name[7] = "absent";
    char* arguments[2] = {name, nullptr};
    QGuiApplication application{argumentCount, arguments};
    QWindow window;
};

TEST_F(AbsentWindows, overlay_isAnOrdinaryWindowWithoutAPlaceOfItsOwn) {
    NoOverlayDesktop desktop;
    const auto flags = window.flags();
    const auto overlay = desktop.adopt(window);
    ASSERT_TRUE(overlay);
    overlay->setTakesClicks(true);
    overlay->setShape({QRect(0, 0, 1, 1)});
    overlay->stayOnTop(true);
    EXPECT_EQ(window.flags(), flags);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(desktop.workArea(), std::nullopt);
    EXPECT_FALSE(desktop.isComposited.get());
}

TEST_F(AbsentWindows, panel_asksForTheKeyboardAsAnyWindowDoes) {
    NoPanelDesktop desktop;
    desktop.adopt(window);
    desktop.setSize(window, QSize(10, 10));
    desktop.setShape(window, {QRect(0, 0, 1, 1)});
    desktop.setShadow(window, QMargins(1, 1, 1, 1), {QRect(1, 1, 1, 1)});
    EXPECT_FALSE(desktop.isComposited());
    window.show();
    desktop.activate(window);
    while (!window.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(QGuiApplication::focusWindow(), &window);
}

TEST(AbsentPointerMonitor, watcher_isNotKept) {
    NoPointerMonitor pointer;
    const auto watched = std::make_shared<int>(0);
    const auto subscription = pointer.watchPresses([watched](QPoint) {});
    EXPECT_EQ(watched.use_count(), 1);
}

TEST(AbsentTrayIcon, icon_isNowhere) {
    NoTrayIcon icon;
    icon.setSymbol(QStringLiteral("mic.fill"));
    icon.setTitle(QStringLiteral("Talvera"));
    icon.setShown(true);
    EXPECT_FALSE(icon.hasTray());
    EXPECT_EQ(icon.frame(), std::nullopt);
}

TEST(AbsentWorkspace, applications_areNeverSeenNotEvenOurselves) {
    NoWorkspace workspace(QStringLiteral("talvera"));
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_EQ(workspace.runningApplication(::getpid()), std::nullopt);
    EXPECT_FALSE(workspace.activate(::getpid()));
    EXPECT_EQ(workspace.ownBundleID(), QStringLiteral("talvera"));
}

} // namespace
