// SPDX-License-Identifier: MIT
#include "app/SessionBackEnds.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(SessionOnX11, server_isTakenForTheSession) {
    EXPECT_EQ(SessionOffer::open().kind(), SessionKind::X11);
}

TEST(SessionOnX11, variablesOfAWaylandSession_changeNothing) {
    // As in a nested server, or in a terminal multiplexer that has seen another session.
    ::qputenv("WAYLAND_DISPLAY", "wayland-0");
    ::qputenv("XDG_SESSION_TYPE", "wayland");
    ::qputenv("SWAYSOCK", "/nowhere");
    EXPECT_EQ(SessionOffer::open().kind(), SessionKind::X11);
}

} // namespace
