// SPDX-License-Identifier: MIT
#include "linux/x11/typing/X11Typist.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace talvera;

namespace {

using Symbols = X11Typist::Symbols;

/// As if the layout could type small letters alone.
bool isSmallLetter(xkb_keysym_t symbol) {
    return symbol >= 'a' && symbol <= 'z';
}

} // namespace

TEST(SymbolsToLend, whatTheLayoutLacks_eachOnceInOrder) {
    EXPECT_EQ(symbolsToLend({'a', 'B', 'b', 'A', 'B'}, 0, 9, isSmallLetter), (Symbols{'B', 'A'}));
}

TEST(SymbolsToLend, moreThanThereIsRoomFor_stopsThere) {
    EXPECT_EQ(symbolsToLend({'A', 'B', 'A', 'C', 'B', 'D'}, 0, 3, isSmallLetter), (Symbols{'A', 'B', 'C'}));
}

TEST(SymbolsToLend, startInTheMiddle_looksAheadOnly) {
    EXPECT_EQ(symbolsToLend({'A', 'B', 'C', 'D'}, 2, 3, isSmallLetter), (Symbols{'C', 'D'}));
    EXPECT_TRUE(symbolsToLend({'A'}, 1, 3, isSmallLetter).empty());
}

TEST(SymbolsToLend, charactersWithoutASymbol_takeNoRoom) {
    EXPECT_EQ(symbolsToLend({XKB_KEY_NoSymbol, 'A'}, 0, 1, isSmallLetter), (Symbols{'A'}));
}

TEST(SymbolsToLend, noSpareKeys_lendsNothing) {
    EXPECT_TRUE(symbolsToLend({'A', 'B'}, 0, 0, isSmallLetter).empty());
}

TEST(SymbolFor, charactersOfAnyPlane_haveASymbol) {
    EXPECT_EQ(symbolFor(U'a'), static_cast<xkb_keysym_t>(XKB_KEY_a));
    EXPECT_EQ(symbolFor(U'\n'), static_cast<xkb_keysym_t>(XKB_KEY_Return));
    EXPECT_EQ(symbolFor(U'\t'), static_cast<xkb_keysym_t>(XKB_KEY_Tab));
    EXPECT_EQ(symbolFor(U'ж'), static_cast<xkb_keysym_t>(XKB_KEY_Cyrillic_zhe));
    EXPECT_EQ(symbolFor(U'\U0001F600'), 0x0101F600U);
    EXPECT_EQ(symbolFor(U'\u0301'), 0x01000301U);
}
