// SPDX-License-Identifier: MIT
#include "speech/TranscriptRules.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

struct Example {
    const char* text;
    const char* expected;
};

void expectAll(QString (*rule)(const QString&), std::initializer_list<Example> examples) {
    for (const auto& [text, expected] : examples)
        EXPECT_EQ(rule(QString::fromUtf8(text)).toStdString(), expected) << '"' << text << '"';
}

TEST(PostProcess, onlyABracketedMark_givesTheEmptyText) {
    expectAll(postProcess, {{"[BLANK_AUDIO]", ""}, {" [BLANK_AUDIO]\n", ""}, {"[a][b] [c]\n\t[d]\n", ""}});
}

TEST(PostProcess, bracketedMarksBesideWords_goAway) {
    expectAll(postProcess, {{"[a] hello [b]", "hello"}, {"one [two] three", "one three"}});
}

TEST(PostProcess, bracketsThatHoldNothingOrDontClose_stay) {
    expectAll(postProcess, {{"a [ b", "a [ b"},
                            {"a [] b", "a [] b"},
                            {"a [b] c [d", "a c [d"},
                            {"a ] b [", "a ] b ["},
                            {"[[a]]", "]"}});
}

TEST(PostProcess, bracketOverTwoLines_isNoMark) {
    expectAll(postProcess, {{"[one\ntwo]", "[one two]"}});
}

TEST(PostProcess, linesOfTheTool_areJoinedByOneBlank) {
    expectAll(postProcess, {{"Hello\nworld", "Hello world"},
                            {" Hello\n world\n", "Hello world"},
                            {"Hello\r\nworld\r\n", "Hello world"},
                            {"a\vb\fc\rd\xC2\x85"
                             "e\xE2\x80\xA8"
                             "f\xE2\x80\xA9g",
                             "a b c d e f g"},
                            {"Hello\n\n \n\t\nworld", "Hello world"}});
}

TEST(PostProcess, blanksOfOtherKindsAroundLines_goWithThem) {
    expectAll(postProcess, {{"Hello\xC2\xA0\n\xE3\x80\x80world", "Hello world"},
                            {"Hello\n\xC2\xA0\nworld", "Hello world"},
                            {"Hello\n[noise]\xC2\xA0\nworld", "Hello world"}});
}

TEST(PostProcess, questionMark_isSetOnceTheTextIsTidy) {
    expectAll(postProcess, {{"new line how are you", "how are you?"},
                            {"How are you...", "How are you?"},
                            {"new paragraph is it ready .", "is it ready?"}});
}

TEST(PostProcess, nothing_givesNothing) {
    expectAll(postProcess, {{"", ""}, {" ", ""}, {"\n", ""}, {"\r\n", ""}, {" \t\n \t", ""}});
}

TEST(PostProcess, bytesThatAreNoText_passUnharmed) {
    const auto withNul = QStringLiteral("a\0b");
    EXPECT_EQ(withNul.size(), 3);
    EXPECT_EQ(postProcess(withNul), withNul);
    const QString halfAPair = QString(QChar(0xD800)) + u'x';
    EXPECT_EQ(postProcess(halfAPair), halfAPair);
}

TEST(PostProcess, spokenCommandOverTwoLinesOfTheTool_counts) {
    expectAll(postProcess, {{"hello new\nline world", "hello \nworld"}});
}

TEST(Normalize, newLineBetweenWords_leavesTheBlankBeforeTheBreak) {
    expectAll(normalize, {{"hello new line world", "hello \nworld"},
                          {"hello new paragraph world", "hello \n\nworld"},
                          {"привет новая строка мир", "привет \nмир"},
                          {"привет новый абзац мир", "привет \n\nмир"}});
}

TEST(Normalize, commandsInAnyCaseAndWidth_count) {
    expectAll(normalize, {{"a NEW   PARAGRAPH b", "a \n\nb"},
                          {"a New\tLine b", "a \nb"},
                          {"а НОВЫЙ   АБЗАЦ б", "а \n\nб"},
                          {"а Новая Строка б", "а \nб"}});
}

TEST(Normalize, commandInsideALongerWord_doesNotCount) {
    expectAll(normalize, {{"renew line", "renew line"},
                          {"new lines", "new lines"},
                          {"newline", "newline"},
                          {"обновая строка", "обновая строка"},
                          {"новая строками", "новая строками"}});
}

TEST(Normalize, commandBeforeAMark_losesItsBreak) {
    expectAll(normalize, {{"done new line.", "done."}, {"done new paragraph, then", "done, then"}});
}

TEST(Normalize, commandAtTheEnds_leavesNothing) {
    expectAll(normalize, {{"new line hello", "hello"}, {"hello new line", "hello"}, {"new paragraph", ""}});
}

TEST(Normalize, blanksBeforeMarks_go) {
    expectAll(
        normalize,
        {{"wait , what ,, now", "wait, what, now"}, {"a \t : b ; c !", "a: b; c!"}, {"a\n\n.b", "a.b"}});
}

TEST(Normalize, repeatedMark_isWrittenOnce) {
    expectAll(normalize, {{"wait...", "wait."},
                          {"wait. .", "wait."},
                          {"wait. . . . now", "wait. now"},
                          {"what??", "what?"},
                          {"a,,b;;c::d", "a,b;c:d"}});
}

TEST(Normalize, differentMarksInARow_stay) {
    expectAll(normalize, {{"what!?", "what!?"}, {"what?!", "what?!"}, {"what!?!?", "what!?!?"}});
}

TEST(Normalize, runsOfBlanks_collapse) {
    expectAll(normalize, {{"a  b \t c\td", "a b c\td"}});
}

TEST(Normalize, otherWhiteSpaceInRuns_stays) {
    expectAll(normalize, {{"a\xC2\xA0\xC2\xA0"
                           "b",
                           "a\xC2\xA0\xC2\xA0"
                           "b"}});
}

TEST(Normalize, indentationBehindABreak_goes) {
    expectAll(normalize, {{"a\n \t b", "a\nb"}});
}

TEST(FixQuestionMark, questionWithoutMark_getsOne) {
    expectAll(fixQuestionMark, {{"how are you", "how are you?"},
                                {"How are you", "How are you?"},
                                {"HOW", "HOW?"},
                                {"чьё это", "чьё это?"}});
}

TEST(FixQuestionMark, fullStop_becomesAQuestionMark) {
    expectAll(fixQuestionMark,
              {{"Кто это.", "Кто это?"}, {"What a day. I like it.", "What a day. I like it?"}});
}

TEST(FixQuestionMark, questionOrExclamationMark_stays) {
    expectAll(fixQuestionMark, {{"Is it?", "Is it?"}, {"Do it!", "Do it!"}, {" Is it? ", " Is it? "}});
}

TEST(FixQuestionMark, otherLastMarks_areFollowedByTheQuestionMark) {
    expectAll(fixQuestionMark, {{"who,", "who,?"}, {"who:", "who:?"}, {"how…", "how…?"}});
}

TEST(FixQuestionMark, questionFurtherBehind_doesNotCount) {
    expectAll(fixQuestionMark, {{"hello, how are you", "hello, how are you"}});
}

TEST(FixQuestionMark, leadingNonLetters_areSkipped) {
    expectAll(fixQuestionMark,
              {{"«что» это", "«что» это?"}, {"1 what", "1 what?"}, {"🙂 why", "🙂 why?"}});
}

TEST(FixQuestionMark, firstWordEndsAtTheFirstNonLetter) {
    expectAll(fixQuestionMark, {{"who's there", "who's there?"}, {"do2", "do2?"}, {"dog", "dog"}});
}

TEST(FixQuestionMark, accentOnALetter_belongsToTheWord) {
    expectAll(fixQuestionMark, {{"how\xCC\x81 so", "how\xCC\x81 so"}});
}

TEST(FixQuestionMark, decomposedSpellingOfAStarter_counts) {
    expectAll(fixQuestionMark, {{"чье\xCC\x88 это", "чье\xCC\x88 это?"}, {"каки\xD0\xB5 это", "какие это?"}});
}

TEST(FixQuestionMark, textThatChanges_losesTheWhiteSpaceAroundIt) {
    expectAll(fixQuestionMark, {{" how are you. \n", "how are you?"}});
}

TEST(FixQuestionMark, textThatDoesNotChange_comesBackAsItWas) {
    expectAll(fixQuestionMark, {{"", ""}, {" \n", " \n"}, {" hello ", " hello "}, {"123.", "123."}});
}

TEST(FixQuestionMark, everyStarter_isKnown) {
    const QStringList starters =
        QStringLiteral(
            "кто что где когда почему зачем как какой какая какое какие чей чья чьё сколько откуда "
            "куда разве неужели who what where when why how which whose whom is are do does did can "
            "could would will should shall may might have has had")
            .split(u' ');
    ASSERT_EQ(starters.size(), 44);
    for (const auto& starter : starters)
        EXPECT_EQ(fixQuestionMark(starter + QStringLiteral(" x")), starter + QStringLiteral(" x?"));
    for (const auto* other : {u"am", u"was", u"were", u"must", u"кого", u"чего", u"wer", u"not"})
        EXPECT_EQ(fixQuestionMark(QString::fromUtf16(other)), QString::fromUtf16(other));
}

/// Qt takes these for byte-order marks where it may.
TEST(TranscriptRules, textThatBeginsLikeAByteOrderMark_staysAsItIs) {
    for (const auto mark : {u'\uFEFF', u'\uFFFE'}) {
        const auto text = mark + QStringLiteral("hello new line world");
        EXPECT_EQ(normalize(text), mark + QStringLiteral("hello \nworld")) << static_cast<int>(mark);
        EXPECT_EQ(postProcess(text), mark + QStringLiteral("hello \nworld"));
        EXPECT_EQ(fixQuestionMark(text), text);
    }
}

} // namespace
