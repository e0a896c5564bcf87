// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <optional>

namespace talvera {

/// Whether Caps Lock is on for the user. While we type, the lock is lifted and the server's state says
/// nothing: then the presses of its key count.
class X11CapsLock {
public:
    explicit X11CapsLock(X11Connection& connection)
        : m_connection(connection) {}

    /// The user's keyboard has sent this for the Caps Lock key. The lock is set with the press that
    /// switches it on, and cleared with the release that switches it off.
    void press();
    void release();

    /// Right now. Asks the server, which handles a key before it answers: of an event that has just been
    /// heard of, this is the state after it.
    bool isOn();

private:
    /// Nothing while the lock is lifted.
    std::optional<bool> serverState();

    X11Connection& m_connection;
    bool m_isOn = false;            // as last known
    bool m_endsWithRelease = false; // of the press in progress
};

} // namespace talvera
