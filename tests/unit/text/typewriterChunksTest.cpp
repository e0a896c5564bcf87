// SPDX-License-Identifier: MIT
#include "text/typewriterChunks.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

QStringList chunks(const char* utf8) {
    return typewriterChunks(QString::fromUtf8(utf8));
}

QStringList list(std::initializer_list<const char*> utf8) {
    QStringList result;
    for (const auto* text : utf8)
        result.append(QString::fromUtf8(text));
    return result;
}

TEST(typewriterChunks, emptyText_hasNone) {
    EXPECT_TRUE(typewriterChunks(QString()).isEmpty());
    EXPECT_TRUE(chunks("").isEmpty());
}

TEST(typewriterChunks, eachCharacter_isOneChunk) {
    EXPECT_EQ(chunks("abc"), list({"a", "b", "c"}));
}

TEST(typewriterChunks, whiteSpace_endsTheChunkBeforeIt) {
    EXPECT_EQ(chunks("a  b"), list({"a  ", "b"}));
    EXPECT_EQ(chunks("one two "), list({"o", "n", "e ", "t", "w", "o "}));
    EXPECT_EQ(chunks("a\n\tb"), list({"a\n\t", "b"}));
    EXPECT_EQ(chunks("a\u00A0\u3000b"), list({"a\u00A0\u3000", "b"}));
}

TEST(typewriterChunks, leadingWhiteSpace_isAChunkOfItsOwn) {
    EXPECT_EQ(chunks("   a"), list({"   ", "a"}));
    EXPECT_EQ(chunks(" "), list({" "}));
    EXPECT_EQ(chunks("\n\na"), list({"\n\n", "a"}));
}

TEST(typewriterChunks, carriageReturnAndLineFeed_stayTogether) {
    EXPECT_EQ(chunks("\r\na"), list({"\r\n", "a"}));
    EXPECT_EQ(chunks("a\r\n\r\nb"), list({"a\r\n\r\n", "b"}));
}

TEST(typewriterChunks, letterWithCombiningAccent_isOneChunk) {
    EXPECT_EQ(chunks("e\u0301x"), list({"e\u0301", "x"}));
}

TEST(typewriterChunks, spaceWithCombiningAccent_countsAsWhiteSpaceByItsFirstCodePoint) {
    EXPECT_EQ(chunks("a \u0301b"), list({"a \u0301", "b"}));
}

TEST(typewriterChunks, emojiOutsideTheBasicPlane_isOneChunkOfTwoUnits) {
    const auto result = chunks("😀a");
    EXPECT_EQ(result, list({"😀", "a"}));
    EXPECT_EQ(result.front().size(), 2);
}

TEST(typewriterChunks, joinedEmojiAndFlags_areOneChunkEach) {
    EXPECT_EQ(chunks("👩‍👩‍👧👍🏽🇩🇪🇫🇷"),
              list({"👩‍👩‍👧", "👍🏽", "🇩🇪", "🇫🇷"}));
}

TEST(typewriterChunks, scriptsWithClusters_areCutAtThem) {
    EXPECT_EQ(chunks("नि한g"), list({"नि", "한", "g"}));
}

TEST(typewriterChunks, joinedAgain_giveTheText) {
    const auto text = QString::fromUtf8("  Größe 12 €,\r\nПривет 漢字 😀e\u0301 \u200Dx\t");
    EXPECT_EQ(typewriterChunks(text).join(QString()), text);
}

TEST(typewriterChunks, halfASurrogatePair_isKeptAndDoesNoHarm) {
    const QString broken = QString(QChar(0xD83D)) + QChar('a') + QChar(0xDE00);
    EXPECT_EQ(typewriterChunks(broken).join(QString()), broken);
}

TEST(typewriterChunks, aMillionCharacters_areCutWithoutFuss) {
    EXPECT_EQ(typewriterChunks(QString(1'000'000, QChar('x'))).size(), 1'000'000);
}

} // namespace
