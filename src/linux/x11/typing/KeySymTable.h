// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/X11Keyboard.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace talvera {

/// What one keycode writes, as the server keeps it.
struct KeySymEntry {
    std::array<std::uint8_t, 4> types{};
    std::uint8_t groups = 0;
    std::uint8_t width = 0;
    std::vector<std::uint32_t> symbols;

    /// The key writes nothing.
    bool isEmpty() const;
    /// The key writes `symbol`, whatever modifiers and layout group are in force, and nothing else.
    bool isOnly(std::uint32_t symbol) const;

    static KeySymEntry only(std::uint32_t symbol);

    bool operator==(const KeySymEntry&) const = default;
};

/// A range of keycodes of one device.
class KeySymTable {
public:
    /// The tables of `devices`, in one round trip. Empty when the server doesn't answer for one of them.
    static std::vector<KeySymTable> fetch(X11Keyboard& keyboard, const std::vector<std::uint16_t>& devices,
                                          xcb_keycode_t first, xcb_keycode_t last);

    KeySymEntry& operator[](xcb_keycode_t key) { return m_entries.at(key - m_first); }
    const KeySymEntry& operator[](xcb_keycode_t key) const { return m_entries.at(key - m_first); }

    bool sameEntriesAs(const KeySymTable& other) const { return m_entries == other.m_entries; }

    /// Sends the table to the server for `device`, in a single change.
    void store(X11Keyboard& keyboard, std::uint16_t device) const;

private:
    xcb_keycode_t m_first = 0;
    xcb_keycode_t m_minimum = 0;
    xcb_keycode_t m_maximum = 0;
    std::vector<KeySymEntry> m_entries;
};

/// Changes the keys between `first` and `last` on all devices of the keyboard. `edit` gets each device's own
/// table, fetched the moment before, so that nothing but its changes is written. Applications take in one
/// change, however many keys it has, as long as all devices have the same layout. False when the server
/// doesn't answer.
bool changeKeySyms(X11Keyboard& keyboard, xcb_keycode_t first, xcb_keycode_t last,
                   const std::function<void(KeySymTable&)>& edit);

} // namespace talvera
