// SPDX-License-Identifier: MIT
#include "linux/x11/typing/TypingLedger.h"

#include "linux/x11/server/serverNotes.h"
#include "linux/x11/typing/KeySymTable.h"
#include "linux/x11/typing/TargetBarrier.h"

namespace talvera {

namespace {

constexpr std::string_view propertyName = serverNotes::typing;
constexpr std::size_t headLength = 3;

constexpr std::chrono::seconds catchUpLimit{10};

TypingLedger::LentKeys lentKeys(const std::vector<std::uint32_t>& items) {
    TypingLedger::LentKeys keys;
    for (std::size_t index = headLength; index + 1 < items.size(); index += 2)
        if (items[index] >= indexOf(lowestXKeycode) && items[index] < xKeycodeCount)
            keys.emplace(XKeycode(items[index]), XKeysym{items[index + 1]});
    return keys;
}

std::vector<std::uint32_t> readLedger(X11Keyboard& keyboard) {
    X11Connection& connection = keyboard.connection();
    return connection.property(connection.root(), connection.atom(propertyName));
}

void eraseLedger(X11Connection& connection) {
    xcb_delete_property(connection.get(), connection.root(), connection.atom(propertyName));
}

} // namespace

void TypingLedger::noteLentKeys(const LentKeys& keys) {
    m_keys = keys;
    write();
}

void TypingLedger::noteLocks(std::uint8_t lifted, std::uint8_t locked) {
    m_lifted = lifted;
    m_locked = locked;
    write();
}

void TypingLedger::noteFilters(std::uint32_t lifted) {
    m_filters = lifted;
    write();
}

void TypingLedger::write() {
    X11Connection& connection = m_keyboard.connection();
    if (m_keys.empty() && m_lifted == 0 && m_filters == 0) {
        if (m_written)
            eraseLedger(connection);
        m_written = false;
        return;
    }
    std::vector<std::uint32_t> items{m_lifted, m_locked, m_filters};
    for (const auto& [key, symbol] : m_keys) {
        items.push_back(static_cast<std::uint32_t>(key));
        items.push_back(static_cast<std::uint32_t>(symbol));
    }
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, connection.root(),
                        connection.atom(propertyName), XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(items.size()), items.data());
    m_written = true;
}

void TypingLedger::settle(X11Keyboard& keyboard, TargetBarrier* barrier) {
    keyboard.releaseStranded();
    const std::vector<std::uint32_t> items = readLedger(keyboard);
    if (items.size() < headLength)
        return;
    if (const LentKeys keys = lentKeys(items); !keys.empty()) {
        if (barrier) {
            keyboard.connection().roundTrip();
            barrier->wait(catchUpLimit);
            if (readLedger(keyboard) != items)
                return; // another process has settled it, and may be typing again by now
        }
        returnLentKeys(keyboard, keys);
    }
    keyboard.setLockedModifiers(static_cast<std::uint8_t>(items[0]), static_cast<std::uint8_t>(items[1]));
    if (items[2] != 0)
        keyboard.restoreTypingFilters(items[2]);
    eraseLedger(keyboard.connection());
    keyboard.connection().roundTrip();
}

void returnLentKeys(X11Keyboard& keyboard, const TypingLedger::LentKeys& keys) {
    changeKeySyms(keyboard, keys.begin()->first, keys.rbegin()->first, [&](KeySymTable& table) {
        for (const auto& [key, symbol] : keys)
            if (table[key].isOnly(symbol))
                table[key] = {};
    });
}

} // namespace talvera
