// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <cstdint>
#include <set>

namespace talvera {

/// The input devices of the session: which are the user's own, and which stand for what programs post.
class X11InputDevices {
public:
    /// Asks the server anew. To be called when it says that devices have come or gone.
    void load(X11Connection& connection);

    /// Programs post keys through this device, we among them.
    bool isPosted(std::uint16_t device) const { return m_posted.contains(device); }

    /// Devices that are there, switched on and part of the session.
    const std::set<std::uint16_t>& present() const { return m_present; }

    /// The keys go through a Wayland compositor, which shows us only those meant for X programs.
    bool isBehindWayland() const { return m_isBehindWayland; }

private:
    std::set<std::uint16_t> m_present;
    std::set<std::uint16_t> m_posted;
    bool m_isBehindWayland = false;
};

} // namespace talvera
