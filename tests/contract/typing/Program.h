// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/XKeycode.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace talvera::test {

/// A program with windows of its own, which counts the keys that it gets.
class Program {
public:
    enum class Kind { Managed, Unmanaged };

    /// Returns when the window is shown, and has the focus if it is one for the window manager.
    xcb_window_t show(Kind kind, int width = 400, int height = 300) {
        xcb_connection_t* x = m_connection->get();
        const xcb_window_t window = xcb_generate_id(x);
        const std::uint32_t values[] = {kind == Kind::Unmanaged ? 1U : 0U,
                                        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(x, XCB_COPY_FROM_PARENT, window, m_connection->root(), 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(x, window);
        const bool shown = waitUntil([&] {
            const auto attributes =
                m_connection->reply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes(x, window));
            return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                   (kind == Kind::Unmanaged || hasFocus(window));
        });
        EXPECT_TRUE(shown);
        return window;
    }

    void focus(xcb_window_t window) {
        xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    void grabKeyboard(xcb_window_t window) {
        const auto grab = m_connection->reply<xcb_grab_keyboard_reply_t>(xcb_grab_keyboard(
            m_connection->get(), 1, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        EXPECT_TRUE(grab && grab->status == XCB_GRAB_STATUS_SUCCESS);
    }

    void ungrabKeyboard() {
        xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    /// Makes the window a part of another one, which may be another program's.
    void moveInto(xcb_window_t whole, xcb_window_t window) {
        xcb_reparent_window(m_connection->get(), window, whole, 0, 0);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    void close(xcb_window_t window) {
        xcb_destroy_window(m_connection->get(), window);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    /// The keys that have been pressed in its windows by now.
    struct KeyPress {
        XKeycode key;
        std::uint16_t modifiers;
        bool operator==(const KeyPress&) const = default;
    };
    const std::vector<KeyPress>& keyPresses() {
        m_connection->roundTrip();
        while (const XcbEvent event = m_connection->pollEvent()) {
            if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
                const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
                m_keyPresses.push_back({XKeycode{press.detail}, press.state});
            }
        }
        return m_keyPresses;
    }

    /// Takes a key with modifiers for itself, wherever the focus is.
    void grabChord(XKeycode key, std::uint16_t modifiers) {
        xcb_grab_key(m_connection->get(), 0, m_connection->root(), modifiers, static_cast<xcb_keycode_t>(key),
                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        EXPECT_TRUE(m_connection->roundTrip());
    }

private:
    /// By the window manager's word and by the server's, which comes later.
    bool hasFocus(xcb_window_t window) {
        const auto focus =
            m_connection->reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_connection->get()));
        return focus && focus->focus == window && focusedWindow(*m_connection) == window;
    }

    /// For long: the server tells of each change between the keyboards that type, and a window manager that
    /// has thousands of those before it comes to a new window late.
    template <typename Condition>
    static bool waitUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    std::vector<KeyPress> m_keyPresses;
};

} // namespace talvera::test
