// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/XKeycode.h"

#include <cstdint>
#include <vector>

namespace talvera {

/// The keyboard as applications see it at one moment, whichever device its parts come from.
struct X11KeyboardState {
    XKeycodeBits downKeys;
    std::uint8_t group = 0; ///< the layout in use among those that the user has set
    std::uint8_t baseModifiers = 0;
    std::uint8_t latchedModifiers = 0;
    std::uint8_t lockedModifiers = 0;
};

/// The session's keyboard: the server's own device that types what we ask for, and the state that it shares
/// with the user's devices. Uses the connection that it was opened on.
class X11Keyboard {
public:
    /// Null when the server has no way to type (XTEST) or to tell about keyboards (XKB, XInput 2).
    static std::unique_ptr<X11Keyboard> open(X11Connection& connection);

    X11Connection& connection() const { return m_connection; }

    /// The device whose keys press() and release() are. Its keymap is the one that counts for them, which
    /// need not be that of the user's own devices.
    std::uint16_t typingDevice() const { return m_typingDevice; }

    /// Starts and stops to be told by events when keymaps change.
    void watchKeymaps(bool watch);
    /// The event tells of a change of the typing device's keymap.
    bool isKeymapChange(const xcb_generic_event_t& event) const;

    /// Every device whose keys reach applications through this keyboard, the typing device among them.
    std::vector<std::uint16_t> devices();

    /// Posts a key event. Releasing a key that the user holds takes it from applications until it is pressed
    /// anew; pressing it again would leave it stuck.
    void press(XKeycode key) { fake(XCB_KEY_PRESS, key); }
    void release(XKeycode key) { fake(XCB_KEY_RELEASE, key); }
    void releaseAll(const XKeycodeBits& keys);

    /// The state now; empty when the server doesn't answer.
    X11KeyboardState state();

    /// Locks and unlocks the modifiers of `mask` as `locked` says. Latched modifiers of `latches` are let go.
    void setLockedModifiers(std::uint8_t mask, std::uint8_t locked, std::uint8_t latches = 0);

    /// Which of Slow Keys and Bounce Keys are on for the typing device, as a set of XKB controls.
    std::uint32_t typingFilters();
    /// Switches these off for the typing device alone, and on again as far as the user's own keyboards have
    /// them.
    void liftTypingFilters(std::uint32_t filters);
    void restoreTypingFilters(std::uint32_t filters);

    /// Releases the keys that the typing device still holds, after a process has died between a press and its
    /// release.
    void releaseStranded();

private:
    X11Keyboard(X11Connection& connection, std::uint16_t master, std::uint16_t typingDevice,
                std::uint8_t eventType)
        : m_connection(connection)
        , m_master(master)
        , m_typingDevice(typingDevice)
        , m_eventType(eventType) {}

    void fake(std::uint8_t type, XKeycode key);
    std::uint32_t filtersOf(std::uint16_t device);
    void setFilters(std::uint32_t mask, std::uint32_t filters);

    X11Connection& m_connection;
    std::uint16_t m_master;
    std::uint16_t m_typingDevice;
    std::uint8_t m_eventType;
};

/// As long as it lives, events tell of changed keymaps. No event is left behind: an idle connection that
/// collected them would grow for ever.
class KeymapWatch {
public:
    explicit KeymapWatch(X11Keyboard& keyboard);
    ~KeymapWatch();
    KeymapWatch(const KeymapWatch&) = delete;
    KeymapWatch& operator=(const KeymapWatch&) = delete;

    /// Whether the typing device's keymap has changed since the last question.
    bool hasChanged();

private:
    X11Keyboard& m_keyboard;
};

} // namespace talvera
