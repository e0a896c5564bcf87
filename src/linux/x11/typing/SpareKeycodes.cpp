// SPDX-License-Identifier: MIT
#include "linux/x11/typing/SpareKeycodes.h"

#include "linux/x11/typing/KeySymTable.h"

#include <algorithm>
#include <set>
#include <utility>

namespace talvera {

namespace {

/// Keys that press a modifier, even if they write nothing.
std::set<xcb_keycode_t> modifierKeys(X11Connection& connection) {
    std::set<xcb_keycode_t> keys;
    const auto answer =
        connection.reply<xcb_get_modifier_mapping_reply_t>(xcb_get_modifier_mapping(connection.get()));
    if (answer) {
        const xcb_keycode_t* begin = xcb_get_modifier_mapping_keycodes(answer.get());
        keys.insert(begin, begin + xcb_get_modifier_mapping_keycodes_length(answer.get()));
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
    X11Connection& connection = m_keyboard.connection();
    const xcb_setup_t* setup = xcb_get_setup(connection.get());
    // The lowest keycode of all can't be used: many programs treat it as none.
    const auto first = static_cast<xcb_keycode_t>(setup->min_keycode + 1);
    const xcb_keycode_t last = setup->max_keycode;
    const std::vector<KeySymTable> tables = KeySymTable::fetch(m_keyboard, m_keyboard.devices(), first, last);
    const std::set<xcb_keycode_t> modifiers = modifierKeys(connection);

    m_pool.clear();
    m_neutral.reset();
    TypingLedger::LentKeys stillLent;
    for (int key = last; key >= first && !tables.empty(); --key) {
        const auto keycode = static_cast<xcb_keycode_t>(key);
        const auto lent = m_lent.find(keycode);
        const bool ours = lent != m_lent.end() && tables.front()[keycode].isOnly(lent->second);
        const bool empty = std::all_of(tables.begin(), tables.end(),
                                       [&](const KeySymTable& table) { return table[keycode].isEmpty(); });
        if (ours)
            stillLent.insert(*lent);
        if (!ours && (!empty || modifiers.contains(keycode)))
            continue;
        if (!ours && !m_neutral)
            m_neutral = keycode;
        else
            m_pool.push_back(keycode);
    }
    m_lent = std::move(stillLent);
}

std::optional<xcb_keycode_t> SpareKeycodes::find(std::uint32_t symbol) const {
    for (const auto& [key, lentSymbol] : m_lent)
        if (lentSymbol == symbol)
            return key;
    return std::nullopt;
}

void SpareKeycodes::lend(const std::vector<std::uint32_t>& symbols) {
    const std::size_t count = std::min(symbols.size(), m_pool.size());
    const std::set<std::uint32_t> wanted(symbols.begin(),
                                         symbols.begin() + static_cast<std::ptrdiff_t>(count));
    std::set<std::uint32_t> missing = wanted;
    std::vector<xcb_keycode_t> free;
    std::vector<xcb_keycode_t> replaceable;
    for (const xcb_keycode_t key : m_pool) {
        const auto lent = m_lent.find(key);
        if (lent == m_lent.end())
            free.push_back(key);
        else if (wanted.contains(lent->second))
            missing.erase(lent->second);
        else
            replaceable.push_back(key);
    }
    if (missing.empty())
        return;
    free.insert(free.end(), replaceable.begin(), replaceable.end());

    TypingLedger::LentKeys lent = m_lent;
    xcb_keycode_t first = 255;
    xcb_keycode_t last = 0;
    auto key = free.begin();
    for (const std::uint32_t symbol : missing) {
        first = std::min(first, *key);
        last = std::max(last, *key);
        lent[*key++] = symbol;
    }
    m_ledger.noteLentKeys(lent);
    const TypingLedger::LentKeys before = std::exchange(m_lent, std::move(lent));
    changeKeySyms(m_keyboard, first, last, [&](KeySymTable& table) {
        for (auto change = m_lent.lower_bound(first); change != m_lent.end() && change->first <= last;
             ++change) {
            KeySymEntry& entry = table[change->first];
            const auto old = before.find(change->first);
            // Another program may have taken the key since we looked; then it stays that one's.
            if (entry.isEmpty() || (old != before.end() && entry.isOnly(old->second)))
                entry = KeySymEntry::only(change->second);
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
