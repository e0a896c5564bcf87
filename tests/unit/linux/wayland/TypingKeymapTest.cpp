// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/TypingKeymap.h"

#include <gtest/gtest.h>

#include <memory>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

using namespace talvera;

namespace {

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
    xkb_keysym_t symbol(std::uint32_t key) const {
        return xkb_state_key_get_one_sym(m_state.get(), key + xkbOffset);
    }

private:
    std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> m_context;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> m_keymap;
    std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> m_state;
};

TEST(TypingKeymapTest, eachCharacter_isWrittenByItsKey) {
    const std::u32string text = U"aZ9!? Приветñe\u0301日本語😀\u200d👧«";
    const TypingKeymap keymap(text);
    const ClientKeymap client(keymap);
    ASSERT_TRUE(client.isValid());
    for (const auto character : text) {
        ASSERT_TRUE(keymap.keyOf(character)) << static_cast<unsigned>(character);
        EXPECT_EQ(client.character(*keymap.keyOf(character)), character) << static_cast<unsigned>(character);
    }
}

TEST(TypingKeymapTest, lineBreakAndTab_areTheirKeys) {
    const TypingKeymap keymap(U"\n\t");
    const ClientKeymap client(keymap);
    EXPECT_EQ(client.symbol(*keymap.keyOf(U'\n')), static_cast<xkb_keysym_t>(XKB_KEY_Return));
    EXPECT_EQ(client.symbol(*keymap.keyOf(U'\t')), static_cast<xkb_keysym_t>(XKB_KEY_Tab));
}

TEST(TypingKeymapTest, characterWithoutAKey_isToldAndTheFirstHaveTheirs) {
    std::u32string text;
    for (char32_t character = U'\u4e00'; character < U'\u4e00' + 200; ++character)
        text += character;
    const TypingKeymap keymap(text);
    std::size_t made = 0;
    while (made < text.size() && keymap.keyOf(text[made]))
        ++made;
    EXPECT_GE(made, 40U);
    for (auto rest = made; rest < text.size(); ++rest)
        EXPECT_FALSE(keymap.keyOf(text[rest]));
    EXPECT_TRUE(ClientKeymap(keymap).isValid());
}

TEST(TypingKeymapTest, keys_areOnlyThoseThatWriteCharacters) {
    std::u32string text = U" \n\t";
    for (char32_t character = U'\u4e00'; character < U'\u4e00' + 200; ++character)
        text += character;
    const TypingKeymap keymap(text);
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

TEST(TypingKeymapTest, pasteChord_isInsert) {
    const ClientKeymap client(TypingKeymap::ofPaste());
    ASSERT_TRUE(client.isValid());
    EXPECT_EQ(client.symbol(KEY_INSERT), static_cast<xkb_keysym_t>(XKB_KEY_Insert));
}

TEST(TypingKeymapTest, emptyText_isAKeymapAllTheSame) {
    EXPECT_TRUE(ClientKeymap(TypingKeymap(U"")).isValid());
}

} // namespace
