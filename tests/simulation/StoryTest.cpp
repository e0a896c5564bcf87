// SPDX-License-Identifier: MIT
#include "Story.h"
#include "PrintQt.h"
#include "StoryPlayer.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace talvera::simulation;

namespace {

/// Why a text is refused as a story.
QString refusal(const char* text) {
    try {
        StoryPlayer().play(Story::parse(QString::fromUtf8(text)));
    } catch (const std::invalid_argument& error) {
        return QString::fromUtf8(error.what());
    }
    return QStringLiteral("nothing");
}

TEST(TwoColumns, rows_areInTheOrderOfTime) {
    const TwoColumns columns{{{2, QStringLiteral("release")}, {0, QStringLiteral("press")}},
                             {{0.6, QStringLiteral("recorderStart")}, {3.18, QStringLiteral("hud hidden")}}};
    EXPECT_EQ(
        columns.rows(),
        QStringList({"0      press                 |", "                             | 0.6    recorderStart",
                     "2      release               |", "                             | 3.18   hud hidden"}));
}

TEST(TwoColumns, whatFollowsAtOnce_standsBesideTheLastThingDone) {
    const TwoColumns columns{{{1, QStringLiteral("a")}, {1, QStringLiteral("b")}},
                             {{1, QStringLiteral("x")}, {1, QStringLiteral("y")}}};
    EXPECT_EQ(columns.rows(),
              QStringList({"1      a                     |", "1      b                     | 1      x",
                           "                             | 1      y"}));
}

TEST(TwoColumns, longWords_widenTheColumn) {
    const TwoColumns columns{{{0, QStringLiteral("applications come to the front without a text field")}},
                             {}};
    EXPECT_EQ(columns.rows(), QStringList({"0      applications come to the front without a text field |"}));
}

TEST(Differences, linesOfOneSide_areMarked) {
    EXPECT_EQ(differences({"a", "b", "c"}, {"a", "x", "c", "d"}),
              QStringList({"  a", "- b", "+ x", "  c", "+ d"}));
    EXPECT_EQ(differences({"a"}, {}), QStringList({"- a"}));
    EXPECT_EQ(differences({}, {"a"}), QStringList({"+ a"}));
}

TEST(Story, text_isReadBackAsItIs) {
    const auto text = QStringLiteral("# A touch.\n\ngiven the disk is full\n\n"
                                     "0      press                 |\n"
                                     "                             | 0.6    recorderStart\n"
                                     "0.7    release               | 0.7    menu error\n");
    const auto story = Story::parse(text);
    EXPECT_EQ(story.given, QStringList({"the disk is full"}));
    EXPECT_EQ(story.columns.done.size(), 2U);
    EXPECT_EQ(story.columns.followed.size(), 2U);
    EXPECT_EQ(story.text(), text);
}

TEST(Story, whatIsNoStory_isRefusedWithItsLine) {
    EXPECT_EQ(refusal("# nothing happens\n"), QStringLiteral("line 2: a story has at least one row"));
    EXPECT_EQ(refusal("0 press\n"),
              QStringLiteral("line 1: a row has a | between what is done and what follows"));
    EXPECT_EQ(refusal("\nsoon press |\n"), QStringLiteral("line 2: a time in seconds goes first"));
    EXPECT_EQ(refusal("0 press | 0.6\n"), QStringLiteral("line 1: words are missing behind the time"));
    EXPECT_EQ(refusal("0 press |\ngiven the disk is full\n"),
              QStringLiteral("line 2: comments and what is given go before the first row"));
}

TEST(Story, wordsThatMeanNothing_areRefused) {
    EXPECT_EQ(refusal("0 pres |\n"), QStringLiteral("pres: there is no such verb"));
    EXPECT_EQ(refusal("given it rains\n0 press |\n"), QStringLiteral("it rains: there is no such verb"));
    EXPECT_NE(refusal("0 set nothing to 1 |\n"), QStringLiteral("nothing"));
}

TEST(StoryPlayer, played_tellsEverythingThatFollows) {
    const auto story = Story::parse(QStringLiteral("0 press |\n2 release |\n"));
    QStringList words;
    for (const auto& entry : StoryPlayer().play(story))
        words << entry.words;
    EXPECT_EQ(words,
              QStringList({"recorderStart", "menu recording", "hud listening", "sound Submarine",
                           "recorderStop 2.0", "menu transcribing", "hud transcribing",
                           "recognise transcribe auto null 2.0", "statistics 2.0 2 11 auto false false none",
                           "menu idle", "type hello world", "hud hidden"}));
}

} // namespace
