// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/TypingKeymap.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>
#include <vector>

#include <linux/input-event-codes.h>

namespace talvera {

namespace {

constexpr std::uint32_t xkbOffset = 8; ///< from the kernel's numbers to those of keymaps

struct Keys {
    std::uint32_t first;
    std::uint32_t last;
};
constexpr std::array rows{Keys{KEY_1, KEY_EQUAL}, Keys{KEY_Q, KEY_RIGHTBRACE}, Keys{KEY_A, KEY_GRAVE},
                          Keys{KEY_BACKSLASH, KEY_SLASH}};

struct FixedKey {
    std::uint32_t key;
    char32_t character; ///< none for the key that only pastes
    const char* symbol;
};
constexpr std::array fixedKeys{FixedKey{KEY_ENTER, U'\n', "Return"}, FixedKey{KEY_TAB, U'\t', "Tab"},
                               FixedKey{KEY_SPACE, U' ', "space"}, FixedKey{KEY_INSERT, U'\0', "Insert"}};

/// Those that write characters, but for the three that have a character everywhere.
const std::vector<std::uint32_t>& freeKeys() {
    static const auto keys = [] {
        std::vector<std::uint32_t> all;
        for (const auto& row : rows) {
            for (auto key = row.first; key <= row.last; ++key)
                all.push_back(key);
        }
        return all;
    }();
    return keys;
}

bool isFixed(char32_t character) {
    return std::ranges::find(fixedKeys, character, &FixedKey::character) != fixedKeys.end();
}

std::string symbolOf(char32_t character) {
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "U%04X", static_cast<unsigned>(character));
    return name.data();
}

/// The first characters of the text, each once, as many as there are keys for.
std::vector<char32_t> wantedOf(std::u32string_view text) {
    std::vector<char32_t> wanted;
    for (const char32_t character : text) {
        if (isFixed(character) || std::ranges::find(wanted, character) != wanted.end())
            continue;
        if (wanted.size() == freeKeys().size())
            break;
        wanted.push_back(character);
    }
    return wanted;
}

} // namespace

TypingKeymap::Change TypingKeymap::makeRoomFor(std::u32string_view text) {
    const auto wanted = wantedOf(text);
    const std::set<char32_t> kept(wanted.begin(), wanted.end());
    std::vector<std::uint32_t> room; // unused keys first
    for (const auto key : freeKeys()) {
        if (!m_characters.contains(key))
            room.push_back(key);
    }
    for (const auto& [key, character] : m_characters) {
        if (!kept.contains(character))
            room.push_back(key);
    }
    auto change = Change::None;
    auto next = room.begin();
    for (const char32_t character : wanted) {
        if (keyOf(character))
            continue;
        const bool isNew = m_characters.insert_or_assign(*next++, character).second;
        if (change != Change::Replaced)
            change = isNew ? Change::Added : Change::Replaced;
    }
    return change;
}

std::string TypingKeymap::xkb() const {
    std::string codes;
    std::string symbols;
    const auto add = [&](std::uint32_t key, const std::string& symbol) {
        const auto name = "<K" + std::to_string(key) + ">";
        codes += name + " = " + std::to_string(key + xkbOffset) + ";\n";
        symbols += "key " + name + " { [ " + symbol + " ] };\n";
    };
    for (const auto& fixed : fixedKeys)
        add(fixed.key, fixed.symbol);
    for (const auto& [key, character] : m_characters)
        add(key, symbolOf(character));
    return "xkb_keymap {\n"
           "xkb_keycodes \"talvera\" {\nminimum = 8;\nmaximum = 255;\n" +
           codes +
           "<LAST> = 255;\n" // GTK 3 forgets the last one when it looks for the keys of a shortcut
           "};\nxkb_types \"talvera\" { include \"complete\" };\n"
           "xkb_compatibility \"talvera\" { include \"complete\" };\n"
           "xkb_symbols \"talvera\" {\n" +
           symbols + "};\n};\n";
}

std::optional<std::uint32_t> TypingKeymap::keyOf(char32_t character) const {
    const auto fixed = std::ranges::find(fixedKeys, character, &FixedKey::character);
    if (fixed != fixedKeys.end() && character != U'\0')
        return fixed->key;
    const auto found = std::ranges::find_if(
        m_characters, [character](const auto& each) { return each.second == character; });
    return found == m_characters.end() ? std::nullopt : std::optional(found->first);
}

} // namespace talvera
