// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/XKeycode.h"
#include "platform/keyboard/VirtualKey.h"

#include <array>
#include <cstdint>
#include <set>
#include <utility>

namespace talvera {

/// Which of the keys that matter the user's own keyboards hold, whatever applications have been told. A key
/// is held as long as one keyboard holds it.
class X11HeldKeys {
public:
    /// Asks the server which keys are modifiers, locks or Compose. To be called again when it says that this
    /// has changed.
    void loadModifiers(X11Connection& connection);

    /// The key is a modifier, on this keyboard map or by its place.
    bool isModifier(XKeycode keycode) const;

    /// The key is Caps Lock on this keyboard map.
    bool isLock(XKeycode keycode) const { return m_isLock[indexOf(keycode)]; }

    /// The key is Compose on this keyboard map: the application takes what follows for the rest of a
    /// sequence, as the first letters of a text would be.
    bool isCompose(XKeycode keycode) const { return m_isCompose[indexOf(keycode)]; }

    void press(std::uint16_t device, XKeycode keycode) { m_held.emplace(keycode, device); }
    void release(std::uint16_t device, XKeycode keycode) { m_held.erase({keycode, device}); }
    /// Forgets that others than these are held.
    void keepKeys(const XKeycodeBits& keys);

    bool isHeld(XKeycode keycode) const;

    /// The KeyFlag bits of what is held, as an event about `about` shows them: for RightCommand, Right
    /// Ctrl counts as Command, otherwise as Control. Locks are not among them.
    std::uint64_t flags(VirtualKey about) const;

private:
    void loadCompose(X11Connection& connection);

    std::array<std::uint64_t, xKeycodeCount> m_flagOf{};
    XKeycodeBits m_isLock;
    XKeycodeBits m_isCompose;
    std::set<std::pair<XKeycode, std::uint16_t>> m_held; // with the device
};

} // namespace talvera
