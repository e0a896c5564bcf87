// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// An input device as the server lists it.
struct X11InputDevice {
    std::uint16_t id = 0;
    std::uint16_t use = 0; ///< XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD and its like
    std::uint16_t attachment =
        0;                 ///< the master that it belongs to; of a master, the one that it is paired with
    bool isPosted = false; ///< programs post keys or clicks through it, we among them
};

/// The input devices of the session that are switched on and part of it: which are the user's own, and which
/// stand for what programs post. The latter are known by the property that the server gives them.
class X11InputDevices {
public:
    /// Asks the server anew. To be called when it says that devices have come or gone. When the server is
    /// gone, what is known stays.
    void load(X11Connection& connection);

    const std::vector<X11InputDevice>& all() const { return m_all; }

    bool isPosted(std::uint16_t device) const { return m_posted.contains(device); }
    const std::set<std::uint16_t>& present() const { return m_present; }

    /// The device by which programs post keys to the master keyboard `master`.
    std::optional<std::uint16_t> postingKeyboard(std::uint16_t master) const;

    /// The keys go through a Wayland compositor, which shows us only those meant for X programs.
    bool isBehindWayland() const { return m_isBehindWayland; }

private:
    std::vector<X11InputDevice> m_all;
    std::set<std::uint16_t> m_present;
    std::set<std::uint16_t> m_posted;
    bool m_isBehindWayland = false;
};

} // namespace talvera
