// SPDX-License-Identifier: MIT
//
// What the judge knows of the way from a press to a text.
#include "JudgeFixture.h"
#include "shell/hud/DictationHUDController.h"

using namespace talvera;
using namespace talvera::simulation;

namespace {

using JudgeOfTheCourse = JudgeFixture;
using Tone = DictationHUDState::NoticeTone;

TEST_F(JudgeOfTheCourse, menuThatLeavesOutAStep_isNoticed) {
    sabotage = [this] { at(1, [this] { setMenu(State::Transcribing); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("the menu went from idle to transcribing"));
}

TEST_F(JudgeOfTheCourse, recordingThatIsNotSavedOnAGoodDisk_isNoticed) {
    sabotage = [this] { at(1, [this] { setMenu(State::Error); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a recording was not saved though the disk took it"));
}

TEST_F(JudgeOfTheCourse, pressThatFailsWithAGoodMicrophone_isNoticed) {
    sabotage = [this] { at(1, [this] { setMenu(State::Error); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("a recording did not start though the recorder did"));
}

TEST_F(JudgeOfTheCourse, errorThatGoesTooSoon_isNoticed) {
    sabotage = [this] { at(1.5, [this] { setMenu(State::Idle); }); };
    EXPECT_EQ(verdict(QStringList{"0 the microphone is broken"} + dictation),
              QStringLiteral("an error was shown for  s"));
}

TEST_F(JudgeOfTheCourse, recordingInTheMiddleOfARecording_isNoticed) {
    sabotage = [this] { at(1, [this] { world().audioEngine.onStarted(); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a recording began while the menu was at recording"));
}

TEST_F(JudgeOfTheCourse, recordingWithoutAPress_isNoticed) {
    sabotage = [this] { at(1, [this] { world().audioEngine.onStarted(); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("a recording began after the key had come up"));
}

TEST_F(JudgeOfTheCourse, recordingBeforeTheHoldDelay_isNoticed) {
    sabotage = [this] { at(0.3, [this] { world().audioEngine.onStarted(); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a recording began before the hold delay had passed"));
}

TEST_F(JudgeOfTheCourse, shortPressThatIsKept_isNoticed) {
    sabotage = [this] { at(0.6, [this] { setMenu(State::Transcribing); }); };
    EXPECT_EQ(verdict({"0 set hotkeyTapToToggle to true", "0.5 the hotkey goes down"}),
              QStringLiteral("a press that was too short was not discarded"));
}

TEST_F(JudgeOfTheCourse, shortRecordingThatIsKept_isNoticed) {
    sabotage = [this] { at(1, [this] { setMenu(State::Transcribing); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a recording of  s was not discarded"));
}

// ---- the recogniser

class JudgeOfRuns : public JudgeFixture {
protected:
    void forgeRun(const char* mode, const char* language) {
        forge("recognise", {{"mode", mode}, {"language", language}});
    }
    /// Instead of each run of a dictation.
    void replaceRuns(const char* mode, const char* language) {
        world().tool.setOnRun([this, mode, language](const test::ToolRequest&) { forgeRun(mode, language); });
    }
};

TEST_F(JudgeOfRuns, runWithoutADictation_isNoticed) {
    sabotage = [this] { at(1, [this] { forgeRun("transcribe", "auto"); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("the recogniser ran without a dictation"));
}

TEST_F(JudgeOfRuns, secondRunBesideTheFirst_isNoticed) {
    sabotage = [this] { at(2.5, [this] { forgeRun("transcribe", "auto"); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("two runs of the recogniser at once"));
}

TEST_F(JudgeOfRuns, translationUnasked_isNoticed) {
    sabotage = [this] { replaceRuns("translateToEnglish", "auto"); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a translation that nobody asked for"));
}

TEST_F(JudgeOfRuns, transcriptionInsteadOfATranslation_isNoticed) {
    sabotage = [this] { replaceRuns("transcribe", "auto"); };
    EXPECT_EQ(verdict(QStringList{"0 set targetLanguageCode to \"en\""} + dictation),
              QStringLiteral("a transcription where a translation was due"));
}

TEST_F(JudgeOfRuns, anotherLanguageThanTheUsers_isNoticed) {
    sabotage = [this] { replaceRuns("transcribe", "fr"); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("recognised as fr instead of auto"));
}

TEST_F(JudgeOfRuns, failureOfADictationThatHasItsText_isNoticed) {
    sabotage = [this] {
        world().files.onRead = [this, judge = world().files.onRead](const QString& path,
                                                                    const QByteArray& bytes) {
            judge(path, bytes);
            setMenu(State::Error);
        };
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a dictation failed though the recogniser gave its text"));
}

TEST_F(JudgeOfRuns, failureThatIsNotShown_isNoticed) {
    sabotage = [this] { at(2.5, [this] { setMenu(State::Idle); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral("the recogniser failed and nobody was told"));
}

class JudgeOfParts : public JudgeFixture {
protected:
    /// So long that its first part is recognised while the user still speaks.
    const QStringList longDictation{"0 the user speaks for 5 s",
                                    "0 first it hears \"one two\" within 0.5 s",
                                    "0 then it hears \"two three\" within 0.5 s",
                                    "0 then it hears \"four\" within 0.5 s",
                                    "0 the hotkey goes down",
                                    "1 the microphone hears 30 s",
                                    "4 the hotkey comes up"};
    std::uint64_t partsAhead() const { return trial.judge().tally().partsAhead; }
};

TEST_F(JudgeOfParts, partThatIsRecognisedAhead_counts) {
    EXPECT_EQ(verdict(longDictation), QStringLiteral("nothing"));
    EXPECT_EQ(partsAhead(), 1U);
}

TEST_F(JudgeOfParts, partThatIsHeardAgain_countsOnlyThen) {
    EXPECT_EQ(verdict(longDictation + QStringList{"3 set sourceLanguageCode to \"de\""}),
              QStringLiteral("nothing"));
    EXPECT_EQ(partsAhead(), 0U);
}

TEST_F(JudgeOfParts, oldPartOfAnotherModel_isNoticed) {
    sabotage = [this] { at(3, [this] { trial.judge().hear("the model is replaced"); }); };
    EXPECT_EQ(verdict(longDictation), QStringLiteral("delivered without a reason"));
}

TEST_F(JudgeOfParts, modelThatIsReplacedWhileTheFocusIsLookedFor_isTheOnlyOne) {
    EXPECT_EQ(verdict(longDictation + QStringList{"0 applications take 0.2 s to say what has the focus",
                                                  "0.7 the model is replaced"}),
              QStringLiteral("nothing"));
    EXPECT_EQ(partsAhead(), 1U);
}

TEST_F(JudgeOfParts, modelThatIsReplacedAfterTheRelease_leavesThePartThatIsUnderWay) {
    QStringList late = longDictation;
    late[5] = "3.8 the microphone hears 30 s";
    EXPECT_EQ(verdict(late + QStringList{"4.1 the model is replaced"}), QStringLiteral("nothing"));
    EXPECT_EQ(partsAhead(), 1U);
}

TEST_F(JudgeOfParts, partOfARecordingThatIsNotSaved_isNotMissed) {
    QStringList discarded = longDictation;
    discarded[0] = "0 the user speaks for 0 s";
    sabotage = [this] { at(3, [this] { world().recordingsFail = true; }); };
    EXPECT_EQ(verdict(discarded), QStringLiteral("nothing"));
    EXPECT_EQ(trial.judge().tally().notSaved, 1U);
}

TEST_F(JudgeOfParts, partInAnotherLanguageThanTheUsers_isNoticed) {
    sabotage = [this] {
        world().tool.setOnRun([this](const test::ToolRequest&) {
            forge("recognise", {{"mode", "transcribe"}, {"language", "fr"}});
        });
    };
    EXPECT_EQ(verdict(longDictation), QStringLiteral("recognised as fr instead of auto"));
}

// ---- what is told

class JudgeOfNotices : public JudgeFixture {
protected:
    void forgeNotice(const char* text, double seconds) {
        forge("hud", {{"state", "notice"}, {"text", text}, {"seconds", seconds}});
    }

    Subscription m_observation;
};

TEST_F(JudgeOfNotices, noticeThatStays_isNoticed) {
    sabotage = [this] {
        at(1, [this] { forgeNotice("Hello", 1.0); });
        at(5, [this] { forge("hud", {{"state", "hidden"}}); });
    };
    EXPECT_EQ(verdict({}), QStringLiteral("a notice stayed for  s"));
}

TEST_F(JudgeOfNotices, noticeThatGoesTooSoon_isNoticed) {
    sabotage = [this] {
        at(1, [this] { forgeNotice("Hello", 5.0); });
        at(2, [this] { forge("hud", {{"state", "hidden"}}); });
    };
    EXPECT_EQ(verdict({}), QStringLiteral("a notice went after  s"));
}

TEST_F(JudgeOfNotices, failureThatIsCalledAnotherOne_isNoticed) {
    sabotage = [this] {
        m_observation = world().agent().menuBar.state.observe([this](State state) {
            if (state == State::Error)
                world().agent().hud.showNotice("Hello", Tone::Info, seconds(1));
        });
    };
    EXPECT_EQ(verdict(QStringList{"0 first it fails"} + dictation), QStringLiteral("a failure was not told"));
}

TEST_F(JudgeOfNotices, failureThatIsNeverTold_isNoticed) {
    sabotage = [this] { hide("hud"); };
    EXPECT_EQ(verdict(QStringList{"0 first it fails"} + dictation),
              QStringLiteral("a failure was never told"));
}

TEST_F(JudgeOfNotices, noticeAfterSilence_isNoticed) {
    sabotage = [this] {
        at(2.5, [this] { world().agent().hud.showNotice("Hello", Tone::Info, seconds(1)); });
    };
    EXPECT_EQ(verdict(QStringList{"0 first it hears \"\" within 1 s"} + dictation),
              QStringLiteral("silence was answered with a notice"));
}

TEST_F(JudgeOfNotices, clipboardWithoutAWord_isNoticed) {
    sabotage = [this] { hide("hud"); };
    EXPECT_EQ(verdict(QStringList{"0 set focusProtectionMode to \"clipboardOnly\""} + slowDictation +
                      QStringList{"2.1 focus on the mail"}),
              QStringLiteral("no notice "));
}

} // namespace
