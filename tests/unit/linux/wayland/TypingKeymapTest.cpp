// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/TypingKeymap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

using namespace talvera;

namespace {

using Change = TypingKeymap::Change;

constexpr std::uint32_t xkbOffset = 8;

/// The keymap as clients read it.
class ClientKeymap {
public:
    explicit ClientKeymap(const TypingKeymap& keymap)
        : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref)
        , m_keymap(xkb_keymap_new_from_string(m_context.get(), keymap.xkb().c_str(),
                                              XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS),
                   xkb_keymap_unref)
        , m_state(xkb_state_new(m_keymap.get()), xkb_state_unref) {}

    bool isValid() const { return m_keymap != nullptr; }
    char32_t character(std::uint32_t key) const {
        return xkb_state_key_get_utf32(m_state.get(), key + xkbOffset);
    }
    std::uint32_t lastKey() const { return xkb_keymap_max_keycode(m_keymap.get()); }
    xkb_keysym_t symbol(std::uint32_t key) const {
        return xkb_state_key_get_one_sym(m_state.get(), key + xkbOffset);
    }

private:
    std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> m_context;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> m_keymap;
    std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> m_state;
};

/// 200 characters, each once.
std::u32string manyCharacters() {
    std::u32string text;
    for (char32_t character = U'\u4e00'; text.size() < 200; ++character)
        text += character;
    return text;
}

std::size_t charactersWithAKey(const TypingKeymap& keymap, std::u32string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [&](char32_t character) { return keymap.keyOf(character).has_value(); }));
}

TEST(TypingKeymapTest, eachCharacter_isWrittenByItsKey) {
    const std::u32string text = U"aZ9!? Приветñe\u0301日本語😀\u200d👧«\u00ad\ufffd";
    TypingKeymap keymap;
    EXPECT_EQ(keymap.makeRoomFor(text), Change::Added);
    const ClientKeymap client(keymap);
    ASSERT_TRUE(client.isValid());
    for (const auto character : text) {
        ASSERT_TRUE(keymap.keyOf(character)) << static_cast<unsigned>(character);
        EXPECT_EQ(client.character(*keymap.keyOf(character)), character) << static_cast<unsigned>(character);
    }
}

TEST(TypingKeymapTest, emptyKeymap_hasLineBreakTabSpaceAndInsert) {
    TypingKeymap keymap;
    EXPECT_EQ(keymap.makeRoomFor(U"\n\t "), Change::None);
    const ClientKeymap client(keymap);
    ASSERT_TRUE(client.isValid());
    EXPECT_EQ(client.symbol(*keymap.keyOf(U'\n')), static_cast<xkb_keysym_t>(XKB_KEY_Return));
    EXPECT_EQ(client.symbol(*keymap.keyOf(U'\t')), static_cast<xkb_keysym_t>(XKB_KEY_Tab));
    EXPECT_EQ(client.character(*keymap.keyOf(U' ')), U' ');
    EXPECT_EQ(client.symbol(KEY_INSERT), static_cast<xkb_keysym_t>(XKB_KEY_Insert));
}

TEST(TypingKeymapTest, insert_isNotTheLastKey) { // GTK 3 doesn't find that one
    EXPECT_GT(ClientKeymap(TypingKeymap()).lastKey(), KEY_INSERT + xkbOffset);
}

TEST(TypingKeymapTest, moreCharactersThanKeys_theFirstHaveTheirs) {
    const auto text = manyCharacters();
    TypingKeymap keymap;
    keymap.makeRoomFor(text);
    const auto made = charactersWithAKey(keymap, text);
    EXPECT_GE(made, 40U);
    EXPECT_EQ(charactersWithAKey(keymap, text.substr(0, made)), made);
    EXPECT_TRUE(ClientKeymap(keymap).isValid());
}

TEST(TypingKeymapTest, characterThatHasAKey_keepsItAsLongAsThereAreOthers) {
    TypingKeymap keymap;
    keymap.makeRoomFor(U"abc");
    const auto key = keymap.keyOf(U'b');
    EXPECT_EQ(keymap.makeRoomFor(U"cba"), Change::None);
    EXPECT_EQ(keymap.makeRoomFor(U"xyz"), Change::Added);
    EXPECT_EQ(keymap.keyOf(U'b'), key);
    EXPECT_EQ(keymap.makeRoomFor(U"b" + manyCharacters()), Change::Replaced);
    EXPECT_EQ(keymap.keyOf(U'b'), key);
    EXPECT_FALSE(keymap.keyOf(U'x'));
    EXPECT_EQ(keymap.makeRoomFor(manyCharacters()), Change::Replaced);
    EXPECT_FALSE(keymap.keyOf(U'b'));
}

TEST(TypingKeymapTest, keys_areOnlyThoseThatWriteCharacters) {
    const auto text = U" \n\t" + manyCharacters();
    TypingKeymap keymap;
    keymap.makeRoomFor(text);
    for (const auto character : text) {
        const auto key = keymap.keyOf(character);
        if (!key)
            continue;
        EXPECT_LE(*key, static_cast<std::uint32_t>(KEY_SPACE));
        for (const auto other :
             {KEY_ESC, KEY_BACKSPACE, KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTALT})
            EXPECT_NE(*key, static_cast<std::uint32_t>(other));
    }
}

} // namespace
