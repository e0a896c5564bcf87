// SPDX-License-Identifier: MIT
#include "KeyLogWindow.h"

#include <array>
#include <stdexcept>

namespace talvera::test {

namespace {
constexpr std::chrono::seconds patience{10};
}

KeyLogWindow::KeyLogWindow() {
    if (m_connection->isBroken())
        throw std::runtime_error("no X server");
    auto* connection = m_connection->get();
    m_window = xcb_generate_id(connection);
    const std::array<std::uint32_t, 2> values{1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                                     XCB_EVENT_MASK_FOCUS_CHANGE |
                                                     XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, m_connection->root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(connection, m_window);
    awaitFocus();
}

void KeyLogWindow::awaitFocus() {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (const auto event = m_connection->waitForEvent(deadline)) {
        const auto type = event->response_type & 0x7F;
        if (type == XCB_MAP_NOTIFY)
            xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
        if (type == XCB_FOCUS_IN)
            return;
    }
    throw std::runtime_error("the window gets no focus");
}

void KeyLogWindow::settleServer() {
    // The answer to the first may reach us before others have got what was sent to them in the same turn.
    m_connection->roundTrip();
    m_connection->roundTrip();
}

std::vector<std::string> KeyLogWindow::takeKeys() {
    settleServer();
    std::vector<std::string> keys;
    while (const auto event = m_connection->pollEvent()) {
        const auto type = event->response_type & 0x7F;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            continue;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        keys.push_back((type == XCB_KEY_PRESS ? "+" : "-") + std::to_string(key.detail));
    }
    return keys;
}

} // namespace talvera::test
