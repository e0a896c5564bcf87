// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11Connection.h"

#include <poll.h>
#include <xcb/xcbext.h>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t propertyLimit = 4096;

} // namespace

std::unique_ptr<X11Connection> X11Connection::open(const std::string& display) {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
    xcb_screen_t* screen = nullptr;
    if (xcb_connection_has_error(connection) == 0) {
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (; screens.rem > 1 && screenNumber > 0; --screenNumber)
            xcb_screen_next(&screens);
        screen = screens.data;
    }
    if (!screen) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screen));
}

X11Connection::~X11Connection() {
    // Closing a socket with events unread would make the server drop requests that it has not read yet.
    roundTrip();
    xcb_disconnect(m_connection);
}

bool X11Connection::waitReadable(Clock::time_point deadline) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0)
        return false;
    pollfd readable{descriptor(), POLLIN, 0};
    // An interrupted wait counts as readable: the caller looks again and waits for what is left.
    return ::poll(&readable, 1, static_cast<int>(left.count())) != 0;
}

void* X11Connection::awaitReply(unsigned int sequence) {
    const auto deadline = Clock::now() + answerTimeout;
    flush();
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(m_connection, sequence, &answer, &error) == 0) {
        if (isBroken() || !waitReadable(deadline)) {
            xcb_discard_reply(m_connection, sequence);
            return nullptr;
        }
    }
    std::free(error);
    return answer;
}

bool X11Connection::roundTrip() {
    return reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_connection)) != nullptr;
}

XcbEvent X11Connection::waitForEvent(Clock::time_point deadline) {
    flush();
    XcbEvent event = pollEvent();
    while (!event && !isBroken() && waitReadable(deadline))
        event = pollEvent();
    return event;
}

xcb_atom_t X11Connection::atom(std::string_view name) {
    if (const auto known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    const auto answer = reply<xcb_intern_atom_reply_t>(
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    if (!answer)
        return XCB_ATOM_NONE;
    return m_atoms.emplace(name, answer->atom).first->second;
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name) {
    const auto answer = reply<xcb_get_property_reply_t>(
        xcb_get_property(m_connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, propertyLimit));
    if (!answer || answer->format != 32)
        return {};
    const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
    return {items, items + xcb_get_property_value_length(answer.get()) / sizeof(std::uint32_t)};
}

} // namespace talvera
