// SPDX-License-Identifier: MIT
#include "linux/x11/windows/GrabFocusFilter.h"

#include <gtest/gtest.h>

#include <xcb/xproto.h>

using namespace talvera;

namespace {

/// Whether the toolkit hears of it.
bool isHeard(std::uint8_t type, std::uint8_t mode, const QByteArray& kind = "xcb_generic_event_t") {
    xcb_focus_in_event_t event{};
    event.response_type = type;
    event.mode = mode;
    return !GrabFocusFilter().nativeEventFilter(kind, &event, nullptr);
}

TEST(GrabFocusFilter, keyboardThatIsLent_isNotTold) {
    EXPECT_FALSE(isHeard(XCB_FOCUS_OUT, XCB_NOTIFY_MODE_GRAB));
    EXPECT_FALSE(isHeard(XCB_FOCUS_IN, XCB_NOTIFY_MODE_UNGRAB));
}

TEST(GrabFocusFilter, keyboardThatGoesToAnotherWindow_isTold) {
    for (const auto mode : {XCB_NOTIFY_MODE_NORMAL, XCB_NOTIFY_MODE_WHILE_GRABBED}) {
        EXPECT_TRUE(isHeard(XCB_FOCUS_OUT, static_cast<std::uint8_t>(mode)));
        EXPECT_TRUE(isHeard(XCB_FOCUS_IN, static_cast<std::uint8_t>(mode)));
    }
    EXPECT_TRUE(isHeard(XCB_FOCUS_IN, XCB_NOTIFY_MODE_GRAB)); // of the window that the keyboard is lent to
}

TEST(GrabFocusFilter, otherEvents_areTold) {
    EXPECT_TRUE(isHeard(XCB_KEY_PRESS, XCB_NOTIFY_MODE_GRAB));
    EXPECT_TRUE(isHeard(XCB_FOCUS_OUT, XCB_NOTIFY_MODE_GRAB, "wl_event"));
}

} // namespace
