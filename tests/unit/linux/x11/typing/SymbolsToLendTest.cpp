// SPDX-License-Identifier: MIT
#include "linux/x11/typing/X11Typist.h"

#include <gtest/gtest.h>

#include <string>

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace talvera;

namespace {

using Symbols = X11Typist::Symbols;

/// A letter's symbol has its own number.
Symbols symbolsOf(const std::string& letters) {
    Symbols symbols;
    for (const char letter : letters)
        symbols.push_back(XKeysym(letter));
    return symbols;
}

/// What has to be lent for `letters`, if the layout could type small letters alone.
Symbols lent(const std::string& letters, std::size_t start, std::size_t capacity) {
    return symbolsToLend(symbolsOf(letters), start, capacity,
                         [](XKeysym symbol) { return symbol >= XKeysym('a') && symbol <= XKeysym('z'); });
}

} // namespace

TEST(SymbolsToLend, whatTheLayoutLacks_eachOnceInOrder) {
    EXPECT_EQ(lent("aBbAB", 0, 9), symbolsOf("BA"));
}

TEST(SymbolsToLend, moreThanThereIsRoomFor_stopsThere) {
    EXPECT_EQ(lent("ABACBD", 0, 3), symbolsOf("ABC"));
}

TEST(SymbolsToLend, startInTheMiddle_looksAheadOnly) {
    EXPECT_EQ(lent("ABCD", 2, 3), symbolsOf("CD"));
    EXPECT_TRUE(lent("A", 1, 3).empty());
}

TEST(SymbolsToLend, charactersWithoutASymbol_takeNoRoom) {
    const auto none = [](XKeysym) { return false; };
    EXPECT_EQ(symbolsToLend({noKeysym, XKeysym('A')}, 0, 1, none), symbolsOf("A"));
}

TEST(SymbolsToLend, noSpareKeys_lendsNothing) {
    EXPECT_TRUE(lent("AB", 0, 0).empty());
}

TEST(SymbolFor, charactersOfAnyPlane_haveASymbol) {
    EXPECT_EQ(symbolFor(U'a'), XKeysym{XKB_KEY_a});
    EXPECT_EQ(symbolFor(U'\n'), XKeysym{XKB_KEY_Return});
    EXPECT_EQ(symbolFor(U'\t'), XKeysym{XKB_KEY_Tab});
    EXPECT_EQ(symbolFor(U'ж'), XKeysym{XKB_KEY_Cyrillic_zhe});
    EXPECT_EQ(symbolFor(U'\U0001F600'), XKeysym{0x0101F600});
    EXPECT_EQ(symbolFor(U'\u0301'), XKeysym{0x01000301});
}
