// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/XKeysym.h"
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
    std::vector<XKeysym> symbols;

    /// The key writes nothing.
    bool isEmpty() const;
    /// The key writes `symbol`, whatever modifiers and layout group are in force, and nothing else.
    bool isOnly(XKeysym symbol) const;

    static KeySymEntry only(XKeysym symbol);

    bool operator==(const KeySymEntry&) const = default;
};

/// A range of keycodes of one device.
class KeySymTable {
public:
    /// The tables of `devices`, in one round trip. Empty when the server doesn't answer for one of them.
    static std::vector<KeySymTable> fetch(X11Keyboard& keyboard, const std::vector<std::uint16_t>& devices,
                                          XKeycode first, XKeycode last);

    KeySymEntry& operator[](XKeycode key) { return m_entries.at(indexOf(key) - indexOf(m_first)); }
    const KeySymEntry& operator[](XKeycode key) const {
        return m_entries.at(indexOf(key) - indexOf(m_first));
    }

    bool sameEntriesAs(const KeySymTable& other) const { return m_entries == other.m_entries; }

    /// Sends the table to the server for `device`, in a single change.
    void store(X11Keyboard& keyboard, std::uint16_t device) const;

private:
    XKeycode m_first{};
    XKeycode m_lowest{}; ///< that the device has at all
    XKeycode m_highest{};
    std::vector<KeySymEntry> m_entries;
};

/// Changes the keys between `first` and `last` on all devices of the keyboard. `edit` gets each device's own
/// table, fetched the moment before, so that nothing but its changes is written. Applications take in one
/// change, however many keys it has, as long as all devices have the same layout. False when the server
/// doesn't answer.
bool changeKeySyms(X11Keyboard& keyboard, XKeycode first, XKeycode last,
                   const std::function<void(KeySymTable&)>& edit);

} // namespace talvera
