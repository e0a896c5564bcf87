// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11Server.h"

namespace talvera {

namespace {

/// What a connection without a server has in their place.
constexpr xcb_setup_t noSetup{};
constexpr xcb_screen_t noScreen{};

const xcb_screen_t* screenOf(const xcb_setup_t& setup, int number) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(&setup);
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

} // namespace

std::unique_ptr<X11Connection> X11Server::connect() const {
    int screenNumber = 0;
    xcb_connection_t* connection =
        xcb_connect(m_display.empty() ? nullptr : m_display.c_str(), &screenNumber);
    const bool isThere = xcb_connection_has_error(connection) == 0;
    const xcb_setup_t* setup = isThere ? xcb_get_setup(connection) : &noSetup;
    const xcb_screen_t* screen = isThere ? screenOf(*setup, screenNumber) : &noScreen;
    return std::unique_ptr<X11Connection>(new X11Connection(connection, setup, screen));
}

} // namespace talvera
