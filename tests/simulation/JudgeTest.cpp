// SPDX-License-Identifier: MIT
//
// What the judge knows of the rest, when nothing is left to happen, and of an agent's death.
#include "JudgeFixture.h"
#include "shell/hud/DictationHUDController.h"
#include "speech/AudioRecorder.h"

using namespace talvera;
using namespace talvera::simulation;

namespace {

using JudgeTest = JudgeFixture;

TEST_F(JudgeTest, goodWorld_isNotComplainedOf) {
    EXPECT_EQ(verdict(dictation), QStringLiteral("nothing"));
}

TEST_F(JudgeTest, worldWithoutRest_isNoticed) {
    sabotage = [this] { tick(); };
    EXPECT_EQ(verdict({}), QStringLiteral("it never comes to rest"));
    ticks = false;
}

TEST_F(JudgeTest, menuThatIsStuck_isNoticed) {
    sabotage = [this] {
        world().onEffect = [judge = world().onEffect](const test::Effect& effect) {
            if (effect.text() != "menu idle")
                judge(effect);
        };
    };
    EXPECT_EQ(verdict({"0 the user speaks for 0.1 s", "0 the hotkey goes down", "1 the hotkey comes up"}),
              QStringLiteral("at rest the menu is at recording"));
}

TEST_F(JudgeTest, pressThatWaits_isNoticed) {
    EXPECT_EQ(verdictAt(0.3, {"0 the hotkey goes down"}), QStringLiteral("at rest a press is still waiting"));
}

TEST_F(JudgeTest, microphoneThatStaysOpen_isNoticed) {
    sabotage = [this] { world().microphone.start(); };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest the microphone is open"));
}

TEST_F(JudgeTest, timerThatRuns_isNoticed) {
    sabotage = [this] { world().actor.startTimer(seconds(60), [] {}); };
    EXPECT_EQ(verdictAt(1, {}), QStringLiteral("at rest a timer is running"));
}

TEST_F(JudgeTest, preparedRunThatStays_isNoticed) {
    std::unique_ptr<PreparedChild> left;
    sabotage = [&] { left = world().tool.prepare({}); };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest a run of the recogniser is prepared"));
}

TEST_F(JudgeTest, secondPreparedRun_isNoticed) {
    std::unique_ptr<PreparedChild> other;
    sabotage = [&] {
        at(1, [&] { other = world().tool.prepare({}); });
        at(3, [&] { other.reset(); });
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral("two runs of the recogniser were prepared at once"));
}

TEST_F(JudgeTest, keyThatStaysDown_isNoticed) {
    sabotage = [this] {
        world().keys.onText = nullptr;
        world().keys.postPaste(KeyPhase::Down, nullptr);
    };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest a key is down"));
}

TEST_F(JudgeTest, microphoneThatIsGoneWithoutAWord_isNoticed) {
    sabotage = [this] { world().agent().recorder.setOnLost([] {}); };
    EXPECT_EQ(verdict(dictation + QStringList{"1.5 the microphone dies when it has heard 0.9 s"}),
              QStringLiteral("the microphone has gone, and nobody was told"));
}

TEST_F(JudgeTest, panelThatStays_isNoticed) {
    sabotage = [this] {
        at(2, [this] { world().windows.menuPanel()->onKeyDown = [](Qt::Key) { return false; }; });
    };
    EXPECT_EQ(verdict({"1 the program is started again"}), QStringLiteral("at rest the panel is open"));
}

TEST_F(JudgeTest, hudThatIsStuck_isNoticed) {
    sabotage = [this] { at(1, [this] { world().agent().hud.update(DictationHUDState::Transcribing{}); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest the HUD is at transcribing"));
}

TEST_F(JudgeTest, emptyHUDOnTheScreen_isNoticed) {
    sabotage = [this] { at(1, [this] { world().agent().hud.show(DictationHUDState::Hidden{}); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest an empty HUD is shown"));
}

TEST_F(JudgeTest, cardThatNobodySees_isNoticed) {
    using Card = DictationHUDState::PermissionRequired;
    sabotage = [this] {
        at(1, [this] { world().agent().hud.update(Card{DictationHUDState::PermissionKind::Microphone}); });
    };
    EXPECT_EQ(verdict({}), QStringLiteral("at rest the HUD is not shown"));
}

TEST_F(JudgeTest, fileThatIsLeft_isNoticed) {
    sabotage = [this] { world().disk.write("/run/left.wav", "RIFF"); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a file was left"));
}

TEST_F(JudgeTest, fileThatHasGoneThoughItCouldNot_isNoticed) {
    sabotage = [this] { world().files.onRemovalFailed("/run/talvera/left.wav"); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a file is gone that should have been left"));
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
