// SPDX-License-Identifier: MIT
//
// Worlds that are not as a world should be, each in one way, and the judge who has to notice.
#include "PrintQt.h"
#include "Trial.h"
#include "core/Agent.h"
#include "shortest.h"
#include "speech/AudioRecorder.h"

#include <gtest/gtest.h>

#include <functional>

using namespace talvera;
using namespace talvera::simulation;

namespace {

class JudgeTest : public testing::Test {
protected:
    test::SimulatedWorld& world() { return trial.play().world(); }

    /// `things` as the left column of a story has them, and then the rest.
    QString verdict(const QStringList& things) {
        trial.launch();
        if (sabotage)
            sabotage();
        std::vector<TwoColumns::Entry> done;
        for (const auto& thing : things)
            done.push_back({thing.section(u' ', 0, 0).toDouble(), thing.section(u' ', 1)});
        constexpr double longEnough = 60;
        trial.perform(done, longEnough);
        if (const auto mistake = trial.play().mistake())
            return *mistake;
        if (!trial.violation())
            trial.rest();
        return kindOf(trial.violation().value_or(QStringLiteral("nothing")));
    }

    const QStringList dictation{QStringLiteral("0 the hotkey goes down"),
                                QStringLiteral("2 the hotkey comes up")};

    /// What is wrong with the world, done to it when the agent is there.
    std::function<void()> sabotage;
    Trial trial;
};

TEST_F(JudgeTest, goodWorld_isNotComplainedOf) {
    EXPECT_EQ(verdict(dictation), QStringLiteral("nothing"));
}

TEST_F(JudgeTest, lettersInAWindowThatTheyWereNotMeantFor_areNoticed) {
    sabotage = [this] { world().keys.ignoresTargets = true; };
    EXPECT_EQ(verdict(dictation + QStringList{"3.14 focus on the mail"}),
              QStringLiteral(" came into the window Mail, which it was not meant for"));
}

TEST_F(JudgeTest, lettersInAPasswordField_areNoticed) {
    sabotage = [this] { world().keys.ignoresTargets = true; };
    EXPECT_EQ(verdict(dictation + QStringList{"3.14 the screen is locked"}),
              QStringLiteral(" came into the window Locker, which it was not meant for"));
}

TEST_F(JudgeTest, lettersFromNowhere_areNoticed) {
    sabotage = [this] { world().keys.onText(QStringLiteral("Editor"), QStringLiteral("x")); };
    EXPECT_EQ(verdict({}), QStringLiteral(" came into the window Editor from nowhere"));
}

TEST_F(JudgeTest, otherLettersThanThoseOfTheText_areNoticed) {
    sabotage = [this] {
        world().actor.startOutside(
            seconds(3.1), [this] { world().keys.onText(QStringLiteral("Editor"), QStringLiteral("x")); });
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral(" came into the window Editor instead of "));
}

TEST_F(JudgeTest, textThatIsNowhere_isNoticed) {
    sabotage = [this] { world().keys.losesTexts = true; };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a text is nowhere"));
}

TEST_F(JudgeTest, textOnTheClipboardForNoReason_isNoticed) {
    sabotage = [this] {
        world().keys.onRefused = nullptr;
        world().keys.canPost = [](const test::PostedKeyEvent&) { return false; };
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral("left on the clipboard for no reason"));
}

TEST_F(JudgeTest, fileThatIsLeft_isNoticed) {
    sabotage = [this] { world().disk.write(QStringLiteral("/run/left.wav"), "RIFF"); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a file was left"));
}

TEST_F(JudgeTest, microphoneThatIsGoneWithoutAWord_isNoticed) {
    sabotage = [this] { world().agent().recorder.setOnLost([] {}); };
    EXPECT_EQ(verdict(dictation + QStringList{"1.5 the microphone dies when it has heard 0.9 s"}),
              QStringLiteral("the microphone has gone, and nobody was told"));
}

TEST_F(JudgeTest, recordWithoutADictation_isNoticed) {
    sabotage = [this] { world().databases.onInsert(DictationSession{}); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a record without a dictation"));
}

TEST_F(JudgeTest, dictationWithoutARecord_isNoticed) {
    sabotage = [this] { world().databases.onInsert = nullptr; };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a dictation without a record"));
}

TEST_F(JudgeTest, settingsThatDieWithTheAgent_areNoticed) {
    sabotage = [this] { world().preferences.refuseSaves(true); };
    EXPECT_EQ(verdict({"1 set insertionMode to \"paste\"", "2 the program is killed and started again"}),
              QStringLiteral("a killed agent has left other settings"));
}

TEST_F(JudgeTest, secondStartWithoutAPanel_isNoticed) {
    sabotage = [this] { trial.play().stage().onSecondStart(); };
    EXPECT_EQ(verdict({}), QStringLiteral("a second start shows neither panel nor wizard"));
}

TEST_F(JudgeTest, chordThatPastesUnasked_isNoticed) {
    sabotage = [this] { world().keys.postPaste(KeyPhase::Down, nullptr); };
    EXPECT_EQ(verdict({}), QStringLiteral(" came into the window Editor from nowhere"));
}

TEST(FaultTally, faultsThatNeverOccurred_areNamed) {
    FaultLog log;
    log.note(Fault::ClipboardTaken);
    EXPECT_EQ(log.tally().counts.at(static_cast<std::size_t>(Fault::ClipboardTaken)), 1U);
    EXPECT_EQ(log.tally().missing().size(), qsizetype(faultCount) - 1);
    EXPECT_FALSE(log.tally().missing().contains(QStringLiteral("clipboard taken")));
    EXPECT_TRUE(log.tally().missing().contains(QStringLiteral("keyboard cut off")));
}

TEST(Shortest, storyInWhichNothingIsWrong_saysSo) {
    const auto story =
        shortest(Story::parse(QStringLiteral("0 the hotkey goes down |\n2 the hotkey comes up |\n")));
    EXPECT_EQ(story.preamble.value(0), QStringLiteral("# nothing is wrong"));
    EXPECT_EQ(story.columns.done.size(), 2U);
}

TEST(Shortest, kindOfAViolation_isWithoutItsParticulars) {
    EXPECT_EQ(kindOf(QStringLiteral("at 3.14 s: a text is nowhere: word1a word1b")),
              QStringLiteral("a text is nowhere"));
    EXPECT_EQ(kindOf(QStringLiteral("at 3.14 s: an error was shown for 5 s")),
              kindOf(QStringLiteral("at 9.2 s: an error was shown for 4.5 s")));
}

} // namespace
