// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/TypingKeymap.h"

#include <array>
#include <cstdio>
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

std::optional<std::uint32_t> fixedKey(char32_t character) {
    switch (character) {
    case U'\n':
        return KEY_ENTER;
    case U'\t':
        return KEY_TAB;
    case U' ':
        return KEY_SPACE;
    default:
        return std::nullopt;
    }
}

std::string symbolOf(char32_t character) {
    if (character == U'\n')
        return "Return";
    if (character == U'\t')
        return "Tab";
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "U%04X", static_cast<unsigned>(character));
    return name.data();
}

} // namespace

TypingKeymap::TypingKeymap(std::u32string_view text) {
    std::size_t used = 0;
    for (const char32_t character : text) {
        if (m_keys.contains(character))
            continue;
        const auto fixed = fixedKey(character);
        if (!fixed && used == freeKeys().size())
            return;
        const auto key = fixed ? *fixed : freeKeys()[used++];
        m_keys.emplace(character, key);
        add(key, symbolOf(character));
    }
}

TypingKeymap TypingKeymap::ofPaste() {
    TypingKeymap keymap(U"");
    keymap.add(KEY_INSERT, "Insert");
    return keymap;
}

std::string TypingKeymap::xkb() const {
    std::string codes;
    std::string symbols;
    for (const auto& [key, symbol] : m_symbols) {
        const auto name = "<K" + std::to_string(key) + ">";
        codes += name + " = " + std::to_string(key + xkbOffset) + ";\n";
        symbols += "key " + name + " { [ " + symbol + " ] };\n";
    }
    return "xkb_keymap {\n"
           "xkb_keycodes \"talvera\" {\nminimum = 8;\nmaximum = 255;\n" +
           codes +
           "};\nxkb_types \"talvera\" { include \"complete\" };\n"
           "xkb_compatibility \"talvera\" { include \"complete\" };\n"
           "xkb_symbols \"talvera\" {\n" +
           symbols + "};\n};\n";
}

std::optional<std::uint32_t> TypingKeymap::keyOf(char32_t character) const {
    const auto found = m_keys.find(character);
    return found == m_keys.end() ? std::nullopt : std::optional(found->second);
}

} // namespace talvera
