// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct zwp_virtual_keyboard_v1;

namespace talvera {

class WaylandConnection;

/// A keyboard of ours in the compositor's seat, with a layout and modifiers of its own: what the user holds
/// on another one has no part in what it writes. Destroying it lets go of what it holds. One thread at a
/// time.
class VirtualKeyboard {
public:
    /// Null where the compositor has none for programs. The connection outlives the keyboard.
    static std::unique_ptr<VirtualKeyboard> open(WaylandConnection& connection);
    ~VirtualKeyboard();
    VirtualKeyboard(const VirtualKeyboard&) = delete;
    VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

    /// What its keys write from now on, in the form "xkb_keymap { ... }". Before the first key. False when
    /// the compositor has gone.
    bool useKeymap(const std::string& keymap);

    /// By the kernel's numbers. False when the compositor has gone.
    bool press(std::uint32_t key);
    bool release(std::uint32_t key);

    /// The modifiers that are down and that are locked on it, by their bits in the keymap.
    bool setModifiers(std::uint32_t down, std::uint32_t locked = 0);

private:
    VirtualKeyboard(WaylandConnection& connection, zwp_virtual_keyboard_v1* keyboard);
    bool post(std::uint32_t key, std::uint32_t state);

    WaylandConnection& m_connection;
    zwp_virtual_keyboard_v1* m_keyboard;
};

} // namespace talvera
