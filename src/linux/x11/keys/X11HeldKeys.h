// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <array>
#include <cstdint>
#include <set>
#include <utility>

namespace talvera {

/// Which of the keys that matter the user's own keyboards hold, whatever applications have been told. A key
/// is held as long as one keyboard holds it.
class X11HeldKeys {
public:
    /// Asks the server which keys are modifiers. To be called again when it says that this has changed.
    void loadModifiers(X11Connection& connection);

    /// The key is a modifier, on this keyboard map or by its place.
    bool isModifier(std::uint8_t keycode) const;

    void press(std::uint16_t device, std::uint8_t keycode) { m_held.emplace(keycode, device); }
    void release(std::uint16_t device, std::uint8_t keycode) { m_held.erase({keycode, device}); }
    /// Forgets what keyboards hold that are no longer there.
    void keepDevices(const std::set<std::uint16_t>& devices);

    bool isHeld(std::uint8_t keycode) const;

    /// The KeyFlag bits of what is held, as an event about the virtual key `about` shows them: for key 54,
    /// Right Ctrl counts as Command, otherwise as Control. Locks are not among them.
    std::uint64_t flags(std::uint16_t about) const;

private:
    std::array<std::uint64_t, 256> m_flagOf{};               // by keycode
    std::set<std::pair<std::uint8_t, std::uint16_t>> m_held; // keycode, device
};

} // namespace talvera
