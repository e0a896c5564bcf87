// SPDX-License-Identifier: MIT
#include "support/KeyWindow.h"

#include "linux/x11/server/X11Server.h"

#include <stdexcept>

namespace talvera::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{10};
constexpr std::uint8_t typeMask = 0x7F; // the other bit tells events that programs made up

} // namespace

KeyWindow::KeyWindow()
    : m_connection(X11Server().connect()) {
    if (m_connection->isBroken())
        throw std::runtime_error("no X server");
    auto* connection = m_connection->get();
    m_window = xcb_generate_id(connection);
    const std::uint32_t events =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, m_connection->root(), 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_map_window(connection, m_window);
    m_connection->flush();
    awaitEvent(XCB_FOCUS_IN);
}

KeyWindow::~KeyWindow() {
    xcb_destroy_window(m_connection->get(), m_window);
    m_connection->flush();
}

Clock::time_point KeyWindow::awaitKeyDown() {
    awaitEvent(XCB_KEY_PRESS);
    return Clock::now();
}

XcbEvent KeyWindow::awaitEvent(std::uint8_t type) {
    const auto deadline = Clock::now() + patience;
    while (auto event = m_connection->waitForEvent(deadline)) {
        if ((event->response_type & typeMask) == type)
            return event;
    }
    throw std::runtime_error("the window doesn't get what it waits for");
}

} // namespace talvera::bench
