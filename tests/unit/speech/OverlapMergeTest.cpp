// SPDX-License-Identifier: MIT
#include "speech/OverlapMerge.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

std::string merged(const char* text, const char* next) {
    return mergeOverlap(QString::fromUtf8(text), QString::fromUtf8(next)).toStdString();
}

QString numberedWords(int first, int count) {
    QStringList list;
    for (int i = first; i < first + count; ++i)
        list.append(QStringLiteral("w%1").arg(i));
    return list.join(u' ');
}

TEST(MergeOverlap, repeatedWordsInOtherCaseAndPunctuation_areFound) {
    EXPECT_EQ(merged("so and then, we", "Then we went home"), "so and then, we went home");
}

TEST(MergeOverlap, wordsAfterTheOverlap_keepTheirCaseAndMarks) {
    EXPECT_EQ(merged("we meet Anna", "anna in Berlin, NOT Rome."), "we meet Anna in Berlin, NOT Rome.");
}

TEST(MergeOverlap, secondTextContainedInTheFirst_addsNothing) {
    EXPECT_EQ(merged("one two three", "two three"), "one two three");
    EXPECT_EQ(merged("one", "One."), "one");
}

TEST(MergeOverlap, moreThanTwentyRepeatedWords_areNotAllSeen) {
    const auto repeated = numberedWords(0, 20);
    EXPECT_EQ(mergeOverlap("a " + repeated, repeated + " end"), "a " + repeated + " end");
    const auto more =
        numberedWords(0, 21); // the last 20 of the first text are not the first 20 of the second
    EXPECT_EQ(mergeOverlap("a " + more, more + " end"), "a " + more + " " + more + " end");
}

TEST(MergeOverlap, oneWordOverAndOver_isTakenAwayTwentyTimes) {
    const auto manyTimes = [](int count) { return QStringList(count, QStringLiteral("ha")).join(u' '); };
    EXPECT_EQ(mergeOverlap("so " + manyTimes(25), manyTimes(25) + " end"), "so " + manyTimes(30) + " end");
}

TEST(MergeOverlap, noCommonWords_standSideBySide) {
    EXPECT_EQ(merged("one two", "three four"), "one two three four");
}

TEST(MergeOverlap, oneCommonWordByChance_isDropped) {
    EXPECT_EQ(merged("this is the", "the house"), "this is the house");
}

TEST(MergeOverlap, longestOverlap_wins) {
    EXPECT_EQ(merged("a b a b", "a b a b c"), "a b a b c");
}

TEST(MergeOverlap, wordsOfOnlyPunctuation_equalEachOther) {
    EXPECT_EQ(merged("one —", "... two"), "one — two");
}

TEST(MergeOverlap, emptyTexts_giveTheOtherAsItIs) {
    EXPECT_EQ(merged("", " b\n"), " b\n");
    EXPECT_EQ(merged(" a\n", ""), " a\n");
    EXPECT_EQ(merged("", ""), "");
    EXPECT_EQ(merged(" ", "b"), "  b");
    EXPECT_EQ(merged("a", "\n"), "a \n");
}

TEST(MergeOverlap, lineBreaks_surviveInTheSecondTextOnlyWithoutOverlap) {
    EXPECT_EQ(merged("one\ntwo", "three\nfour"), "one\ntwo three\nfour");
    EXPECT_EQ(merged("one\ntwo", "two\nfour  five"), "one\ntwo four five");
}

TEST(MergeOverlap, otherScripts_foldTheirCase) {
    EXPECT_EQ(merged("Мы ПОШЛИ домой", "пошли Домой, потом"), "Мы ПОШЛИ домой потом");
    EXPECT_EQ(merged("im GRÜNEN Café", "grünen Cafe\u0301 sitzen"), "im GRÜNEN Café sitzen");
}

TEST(MergeAll, texts_areFoldedFromTheLeft) {
    EXPECT_EQ(mergeAll({}), "");
    EXPECT_EQ(mergeAll({" a "}), " a ");
    EXPECT_EQ(mergeAll({"a b", "b c", "c d"}), "a b c d");
}

TEST(MergeAll, emptyTextInBetween_leavesTheRestAsItIs) {
    EXPECT_EQ(mergeAll({"a b", "", "b c"}), "a b c");
    EXPECT_EQ(mergeAll({"", "a"}), "a");
}

TEST(TailPrompt, blankText_givesNone) {
    EXPECT_EQ(tailPrompt(""), std::nullopt);
    EXPECT_EQ(tailPrompt(" \n\t"), std::nullopt);
}

TEST(TailPrompt, upToSixHundredCharacters_areAllOfThem) {
    EXPECT_EQ(tailPrompt("  hello\n"), "hello");
    const auto text = QStringLiteral("ab ").repeated(199) + "abc"; // 600
    EXPECT_EQ(tailPrompt(text + "\n"), text);
}

TEST(TailPrompt, longerText_beginsWithAWholeWord) {
    const auto text = "x" + QStringLiteral("ab ").repeated(199) + "abc"; // 601
    EXPECT_EQ(tailPrompt(text), text.mid(4));
}

TEST(TailPrompt, oneEndlessWord_givesItsLastSixHundredCharacters) {
    EXPECT_EQ(tailPrompt(QString(700, u'a')), QString(600, u'a'));
}

TEST(TailPrompt, charactersAreWhatTheReaderCounts) {
    const auto accented = QStringLiteral("e\u0301").repeated(600);
    EXPECT_EQ(tailPrompt(accented), accented);
    EXPECT_EQ(tailPrompt("e\u0301" + accented), accented);
    const auto faces = QStringLiteral("\U0001F600").repeated(599);
    EXPECT_EQ(tailPrompt("x\n" + faces), faces);
}

} // namespace
