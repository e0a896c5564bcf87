// SPDX-License-Identifier: MIT
#include "linux/x11/typing/FocusedXProgram.h"

#include "linux/x11/server/FocusedWindow.h"

namespace talvera {

namespace {

// For one that hangs. Keys that it reads later than that may come out as others.
constexpr std::chrono::seconds patience{10};

} // namespace

FocusedXProgram::FocusedXProgram(const X11Server& server)
    : m_connection(server.connect())
    , m_barrier(*m_connection) {}

void FocusedXProgram::awaitReading() {
    if (m_connection->isBroken() || focusedWindow(*m_connection) == XCB_NONE)
        return;
    m_barrier.begin();
    m_barrier.wait(patience);
}

} // namespace talvera
