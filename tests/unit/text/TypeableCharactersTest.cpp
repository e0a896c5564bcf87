// SPDX-License-Identifier: MIT
#include "text/typeableCharacters.h"

#include <gtest/gtest.h>

using namespace talvera;

TEST(TypeableCharacters, accentsAndEmoji_comeAsOneCodePointEach) {
    EXPECT_EQ(typeableCharacters(QStringLiteral("e\u0301 \U0001F600")), U"e\u0301 \U0001F600");
}

TEST(TypeableCharacters, lineBreakInEachSpelling_isOneLineFeed) {
    EXPECT_EQ(typeableCharacters(QStringLiteral("a\r\nb\rc\nd\n\r")), U"a\nb\nc\nd\n\n");
}

TEST(TypeableCharacters, controlCharacters_areLeftOutExceptTab) {
    EXPECT_EQ(typeableCharacters(QStringLiteral("a\u0007\u001b\u007f\u0085\tb")), U"a\tb");
}

TEST(TypeableCharacters, halfASurrogatePair_becomesTheReplacementCharacter) {
    EXPECT_EQ(typeableCharacters(QString(QChar(0xD83D)) + QLatin1Char('x')), U"\uFFFDx");
}
