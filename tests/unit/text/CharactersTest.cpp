// SPDX-License-Identifier: MIT
#include "text/Characters.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(Characters, clusters_countOnce) {
    EXPECT_EQ(characterCount(QString()), 0U);
    EXPECT_EQ(characterCount(QStringLiteral("abc")), 3U);
    EXPECT_EQ(characterCount(QStringLiteral("e\u0301")), 1U);
    EXPECT_EQ(characterCount(QStringLiteral("\U0001F469\u200D\U0001F680")), 1U);               // an astronaut
    EXPECT_EQ(characterCount(QStringLiteral("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7")), 2U); // two flags
    EXPECT_EQ(characterCount(QStringLiteral("a\r\nb")), 3U);
}

TEST(Characters, pieces_areTheTextInOrder) {
    const auto text = QStringLiteral("ae\u0301\r\n\U0001F600");
    const auto pieces = characters(text);
    ASSERT_EQ(pieces.size(), 4U);
    EXPECT_EQ(pieces[1], u"e\u0301");
    EXPECT_EQ(pieces[2], u"\r\n");
    EXPECT_EQ(pieces[3], u"\U0001F600");
}

TEST(Characters, words_standBetweenWhiteSpace) {
    EXPECT_EQ(words(QStringLiteral(" one,\ttwo\r\n\u00A0three ")), (QStringList{"one,", "two", "three"}));
    EXPECT_EQ(words(QStringLiteral(" \n")), QStringList());
    EXPECT_EQ(words(QString()), QStringList());
}

TEST(Characters, lastWords_areTheEndOfAllWords) {
    for (const auto* text : {u"", u" ", u"one", u" one ", u"one two", u"one two three ",
                             u" one  two\nthree four", u"e\u0301 \u0301x \U0001F600\u0301 y"}) {
        const auto all = words(QString::fromUtf16(text));
        for (qsizetype count = 1; count < 6; ++count) {
            EXPECT_EQ(lastWords(QString::fromUtf16(text), count),
                      all.mid(std::max<qsizetype>(all.size() - count, 0)))
                << count;
        }
    }
}

TEST(Characters, trims_takeOnlyWhatTheyName) {
    EXPECT_EQ(trimmedBlanks(QStringLiteral("\t\u00A0\u3000 a b \n")), QStringLiteral("a b \n"));
    EXPECT_EQ(trimmedWhitespace(QStringLiteral("\r\n\u0085\u2028 a b \u2029\v")), QStringLiteral("a b"));
    EXPECT_EQ(trimmedPunctuation(QStringLiteral("«¿a-b?!»")), QStringLiteral("a-b"));
    EXPECT_EQ(trimmedPunctuation(QStringLiteral("$a+")), QStringLiteral("$a+")); // symbols are no punctuation
    EXPECT_EQ(trimmedPunctuation(QStringLiteral("\U00010100x")), QStringLiteral("x"));
}

TEST(Characters, folding_makesEqualWhatReadsEqual) {
    EXPECT_EQ(foldedForComparison(QStringLiteral("ÜBER")), QStringLiteral("über"));
    EXPECT_EQ(foldedForComparison(QStringLiteral("U\u0308BER")), QStringLiteral("über"));
    EXPECT_EQ(foldedForComparison(QStringLiteral("ТЕСТ")), QStringLiteral("тест"));
}

TEST(Characters, firstAndLast_cutBetweenWhatReadersSee) {
    const QString flags = QStringLiteral("a🇩🇪e\u0301👩‍👩‍👧z");
    EXPECT_EQ(firstCharacters(flags, 2), QStringLiteral("a🇩🇪"));
    EXPECT_EQ(firstCharacters(flags, 3), QStringLiteral("a🇩🇪e\u0301"));
    EXPECT_EQ(lastCharacters(flags, 2), QStringLiteral("👩‍👩‍👧z"));
    EXPECT_EQ(lastCharacters(flags, 3), QStringLiteral("e\u0301👩‍👩‍👧z"));
}

TEST(Characters, firstAndLastOfMoreThanThereAre_areTheWholeText) {
    for (const std::size_t count : {2U, 3U, 100U}) {
        EXPECT_EQ(firstCharacters("ab", count), "ab");
        EXPECT_EQ(lastCharacters("ab", count), "ab");
    }
}

TEST(Characters, firstAndLastOfNone_areEmpty) {
    EXPECT_EQ(firstCharacters("ab", 0), "");
    EXPECT_EQ(lastCharacters("ab", 0), "");
    EXPECT_EQ(firstCharacters("", 3), "");
    EXPECT_EQ(lastCharacters("", 3), "");
}

TEST(Characters, wordThatBeginsLikeAByteOrderMark_isComparedAsItIs) {
    for (const auto mark : {u'\uFEFF', u'\uFFFE'})
        EXPECT_EQ(foldedForComparison(mark + QStringLiteral("Ab")), mark + QStringLiteral("ab"));
}

} // namespace
