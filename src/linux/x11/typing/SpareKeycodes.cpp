// SPDX-License-Identifier: MIT
#include "linux/x11/typing/SpareKeycodes.h"

#include "linux/x11/typing/KeySymTable.h"

#include <algorithm>
#include <set>
#include <utility>

namespace talvera {

namespace {

/// Keys that press a modifier, even if they write nothing.
std::set<XKeycode> modifierKeys(X11Connection& connection) {
    std::set<XKeycode> keys;
    const auto answer =
        connection.reply<xcb_get_modifier_mapping_reply_t>(xcb_get_modifier_mapping(connection.get()));
    if (answer) {
        const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(answer.get());
        for (int index = 0; index < xcb_get_modifier_mapping_keycodes_length(answer.get()); ++index)
            keys.insert(XKeycode{keycodes[index]});
    }
    return keys;
}

} // namespace

SpareKeycodes::SpareKeycodes(X11Keyboard& keyboard, TypingLedger& ledger)
    : m_keyboard(keyboard)
    , m_ledger(ledger) {
    refresh();
}

void SpareKeycodes::refresh() {
    const xcb_setup_t& setup = m_keyboard.connection().setup();
    // The lowest keycode of all can't be used: many programs treat it as none.
    const auto first = XKeycode(setup.min_keycode + 1);
    const auto last = XKeycode(setup.max_keycode);
    const auto tables = KeySymTable::fetch(m_keyboard, m_keyboard.devices(), first, last);
    const auto modifiers = modifierKeys(m_keyboard.connection());

    m_pool.clear();
    m_neutral.reset();
    TypingLedger::LentKeys stillLent;
    for (std::size_t index = indexOf(last); index >= indexOf(first) && !tables.empty(); --index) {
        const auto key = XKeycode(index);
        const auto lent = m_lent.find(key);
        const bool isOurs = lent != m_lent.end() && tables.front()[key].isOnly(lent->second);
        const bool isEmpty =
            std::ranges::all_of(tables, [key](const KeySymTable& table) { return table[key].isEmpty(); });
        if (isOurs)
            stillLent.insert(*lent);
        if (!isOurs && (!isEmpty || modifiers.contains(key)))
            continue;
        if (!isOurs && !m_neutral)
            m_neutral = key;
        else
            m_pool.push_back(key);
    }
    m_lent = std::move(stillLent);
}

std::optional<XKeycode> SpareKeycodes::find(XKeysym symbol) const {
    for (const auto& [key, lentSymbol] : m_lent) {
        if (lentSymbol == symbol)
            return key;
    }
    return std::nullopt;
}

void SpareKeycodes::lend(const std::vector<XKeysym>& symbols) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(symbols.size(), m_pool.size()));
    std::set<XKeysym> missing(symbols.begin(), symbols.begin() + count);
    const auto keys = keysFor(missing);
    TypingLedger::LentKeys changes;
    for (auto key = keys.begin(); const XKeysym symbol : missing)
        changes[*key++] = symbol;
    if (!changes.empty())
        change(changes);
}

/// The keys that can be had for `symbols`, free ones first. Takes from `symbols` what is lent already.
std::vector<XKeycode> SpareKeycodes::keysFor(std::set<XKeysym>& symbols) const {
    const std::set<XKeysym> wanted = symbols;
    std::vector<XKeycode> free;
    std::vector<XKeycode> replaceable;
    for (const XKeycode key : m_pool) {
        const auto lent = m_lent.find(key);
        if (lent == m_lent.end())
            free.push_back(key);
        else if (wanted.contains(lent->second))
            symbols.erase(lent->second);
        else
            replaceable.push_back(key);
    }
    free.insert(free.end(), replaceable.begin(), replaceable.end());
    return free;
}

void SpareKeycodes::change(const TypingLedger::LentKeys& changes) {
    const TypingLedger::LentKeys before = m_lent;
    for (const auto& [key, symbol] : changes)
        m_lent[key] = symbol;
    m_ledger.noteLentKeys(m_lent);
    changeKeySyms(m_keyboard, changes.begin()->first, changes.rbegin()->first, [&](KeySymTable& table) {
        for (const auto& [key, symbol] : changes) {
            KeySymEntry& entry = table[key];
            const auto old = before.find(key);
            // Another program may have taken the key since we looked; then it stays that one's.
            if (entry.isEmpty() || (old != before.end() && entry.isOnly(old->second)))
                entry = KeySymEntry::only(symbol);
        }
    });
}

void SpareKeycodes::giveBack() {
    if (m_lent.empty())
        return;
    returnLentKeys(m_keyboard, m_lent);
    m_lent.clear();
    m_ledger.noteLentKeys(m_lent);
    m_keyboard.connection().flush();
}

} // namespace talvera
