// SPDX-License-Identifier: MIT
#include "linux/x11/typing/KeySymTable.h"

#include "linux/x11/server/XcbXkb.h"

#include <algorithm>
#include <cstring>

namespace talvera {

namespace {

constexpr std::uint8_t groupCountMask = 0x0F;
constexpr std::uint8_t oneLevelType = 0; // the protocol gives this type the same place in every keymap

template <typename T>
void append(std::vector<std::uint8_t>& bytes, const T& value) {
    const auto* begin = reinterpret_cast<const std::uint8_t*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof(T));
}

} // namespace

bool KeySymEntry::isEmpty() const {
    return std::all_of(symbols.begin(), symbols.end(), [](XKeysym symbol) { return symbol == noKeysym; });
}

bool KeySymEntry::isOnly(XKeysym symbol) const {
    return (groups & groupCountMask) == 1 && symbols.size() == 1 && symbols.front() == symbol;
}

KeySymEntry KeySymEntry::only(XKeysym symbol) {
    KeySymEntry entry;
    entry.types.fill(oneLevelType);
    entry.groups = 1;
    entry.width = 1;
    entry.symbols = {symbol};
    return entry;
}

std::vector<KeySymTable> KeySymTable::fetch(X11Keyboard& keyboard, const std::vector<std::uint16_t>& devices,
                                            XKeycode first, XKeycode last) {
    X11Connection& connection = keyboard.connection();
    const auto firstKey = static_cast<xcb_keycode_t>(first);
    const auto count = static_cast<std::uint8_t>(indexOf(last) - indexOf(first) + 1);
    std::vector<xcb_xkb_get_map_cookie_t> cookies;
    for (const std::uint16_t device : devices) {
        cookies.push_back(xcb_xkb_get_map(connection.get(), device, 0, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0,
                                          firstKey, count, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    }
    std::vector<KeySymTable> tables;
    for (const auto cookie : cookies) {
        const auto answer = connection.reply<xcb_xkb_get_map_reply_t>(cookie);
        if (!answer || answer->firstKeySym != firstKey || answer->nKeySyms != count)
            continue;
        KeySymTable table;
        table.m_first = first;
        table.m_lowest = XKeycode{answer->minKeyCode};
        table.m_highest = XKeycode{answer->maxKeyCode};
        const auto* bytes = static_cast<const std::uint8_t*>(xcb_xkb_get_map_map(answer.get()));
        for (unsigned index = 0; index < count; ++index) {
            xcb_xkb_key_sym_map_t head;
            std::memcpy(&head, bytes, sizeof head);
            KeySymEntry entry;
            std::copy(std::begin(head.kt_index), std::end(head.kt_index), entry.types.begin());
            entry.groups = head.groupInfo;
            entry.width = head.width;
            bytes += sizeof head;
            for (unsigned left = head.nSyms; left > 0; --left, bytes += sizeof(XKeysym))
                std::memcpy(&entry.symbols.emplace_back(), bytes, sizeof(XKeysym));
            table.m_entries.push_back(std::move(entry));
        }
        tables.push_back(std::move(table));
    }
    return tables.size() == devices.size() ? tables : std::vector<KeySymTable>{};
}

void KeySymTable::store(X11Keyboard& keyboard, std::uint16_t device) const {
    std::vector<std::uint8_t> bytes;
    std::size_t symbols = 0;
    for (const KeySymEntry& entry : m_entries) {
        xcb_xkb_key_sym_map_t head{};
        std::copy(entry.types.begin(), entry.types.end(), std::begin(head.kt_index));
        head.groupInfo = entry.groups;
        head.width = entry.width;
        head.nSyms = static_cast<std::uint16_t>(entry.symbols.size());
        append(bytes, head);
        for (const XKeysym symbol : entry.symbols)
            append(bytes, symbol);
        symbols += entry.symbols.size();
    }
    // No flags: the server keeps what it has derived for the user's keys as it is.
    xcb_xkb_set_map(keyboard.connection().get(), device, XCB_XKB_MAP_PART_KEY_SYMS, 0,
                    static_cast<xcb_keycode_t>(m_lowest), static_cast<xcb_keycode_t>(m_highest), 0, 0,
                    static_cast<xcb_keycode_t>(m_first), static_cast<std::uint8_t>(m_entries.size()),
                    static_cast<std::uint16_t>(symbols), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                    bytes.data());
}

bool changeKeySyms(X11Keyboard& keyboard, XKeycode first, XKeycode last,
                   const std::function<void(KeySymTable&)>& edit) {
    const std::vector<std::uint16_t> devices = keyboard.devices();
    std::vector<KeySymTable> tables = KeySymTable::fetch(keyboard, devices, first, last);
    if (tables.empty())
        return false;
    const bool uniform = std::all_of(tables.begin(), tables.end(), [&](const KeySymTable& table) {
        return table.sameEntriesAs(tables.front());
    });
    for (KeySymTable& table : tables)
        edit(table);
    if (uniform)
        tables.front().store(keyboard, XCB_XKB_ID_USE_CORE_KBD);
    else
        for (std::size_t index = 0; index < tables.size(); ++index)
            tables[index].store(keyboard, devices[index]);
    return keyboard.connection().roundTrip();
}

} // namespace talvera
