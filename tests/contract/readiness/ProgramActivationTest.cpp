// SPDX-License-Identifier: MIT
#include "FakeProgramActivation.h"
#include "OtherWindow.h"
#include "linux/xdg/QtProgramActivation.h"

#include <QGuiApplication>
#include <QWindow>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(ProgramActivationContract, fake_tellsAsLongAsSomebodyListens) {
    test::FakeProgramActivation activation;
    int told = 0;
    {
        const auto subscription = activation.observe([&told] { ++told; });
        activation.activate();
        activation.activate();
    }
    activation.activate();
    EXPECT_EQ(told, 2);
}

TEST(ProgramActivationContract, window_isToldWhenItGetsTheFocus) {
    QtProgramActivation activation;
    int told = 0;
    const auto subscription = activation.observe([&told] { ++told; });
    QWindow window;
    window.setFlag(Qt::X11BypassWindowManagerHint); // nobody here manages windows
    window.show();
    while (!window.isExposed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(told, 0);
    window.requestActivate();
    while (told == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(told, 1);

    // The user turns to another program, and comes back.
    test::OtherWindow other({0, 0, 100, 100}, Qt::darkGreen);
    const auto focus = [&other](xcb_window_t id) {
        xcb_set_input_focus(other.connection().get(), XCB_INPUT_FOCUS_PARENT, id, XCB_CURRENT_TIME);
        other.connection().flush();
    };
    focus(other.id());
    while (QGuiApplication::applicationState() == Qt::ApplicationActive)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(told, 1);
    focus(xcb_window_t(window.winId()));
    while (told == 1)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(told, 2);
}

} // namespace
