// SPDX-License-Identifier: MIT
#include "CoreTest.h"
#include "shell/MenuBarController.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class Pipeline : public CoreTest {};

TEST_F(Pipeline, targetOff_transcribesAndInsertsThePlainText) {
    world.settings.sourceLanguageCode.set("en");
    launch();
    dictate();
    EXPECT_EQ(story({"recognise", "type"}),
              QStringList({"recognise transcribe en Speech with full punctuation: commas, periods, question "
                           "marks, and proper capitalization. 2.0",
                           "type hello world"}));
    EXPECT_EQ(world.traces().sliced(1),
              QStringList({"[timing] whisper 1.00s", "[pipeline] whisper transcribe (11 chars)",
                           "Transcript received (11 chars)."}));
}

TEST_F(Pipeline, targetEnglishFromEnglish_takesThePlainRoute) {
    world.settings.targetLanguageCode.set("en");
    world.settings.sourceLanguageCode.set("en");
    launch();
    dictate();
    EXPECT_EQ(story({"recognise"}).size(), 1);
    EXPECT_TRUE(story({"recognise"}).constFirst().startsWith("recognise transcribe en"));
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 2 11 en true false none"}));
    EXPECT_TRUE(world.traces().contains("[en-target] src=en (whisperLang=en)"));
    EXPECT_EQ(world.languageRecognizer.calls, 0);
}

TEST_F(Pipeline, recognitionFails_tellsTheUserAndRecordsNothing) {
    launch();
    recognise({failure(3)});
    hold(1);
    advance(1);
    EXPECT_EQ(story({"menu", "hud", "statistics", "type"}),
              QStringList({"menu recording", "hud listening", "menu transcribing", "hud transcribing",
                           "menu error", "hud notice Transcription failed warn 3.0"}));
    EXPECT_EQ(world.agent().menuBar.lastErrorMessage.get(), "Transcription failed");
    EXPECT_TRUE(world.traces().constLast().startsWith("Whisper failed: "));
    EXPECT_TRUE(world.wavFiles().isEmpty());
    world.effects.clear();
    runToRest();
    EXPECT_EQ(story({"menu", "hud"}), QStringList({"hud hidden", "menu idle"}));
}

TEST_F(Pipeline, failure_isInTheTrayForFourSecondsAndOnTheHUDForThree) {
    launch();
    recognise({failure()});
    dictate();
    const auto timeOf = [this](const char* text) {
        for (const auto& effect : world.effects) {
            if (effect.text().startsWith(text))
                return effect.at;
        }
        return 0.0;
    };
    EXPECT_DOUBLE_EQ(timeOf("menu idle") - timeOf("menu error"), 4.0);
    EXPECT_NEAR(timeOf("hud hidden") - timeOf("hud notice"), 3.0, 0.2); // with its fade
}

TEST_F(Pipeline, everyKindOfFailure_endsInTheSameWords) {
    launch();
    ToolRun noFile;
    noFile.leavesNoFile = true;
    ToolRun noText;
    noText.text = "\xFF\xFE\xC0";
    ToolRun cannotStart;
    cannotStart.launchFailure = PlatformError("ChildProcess", 12, "no memory");
    ToolRun hung;
    hung.hung = hung.signalled = true;
    hung.status = 9;
    for (const auto& run : {noFile, noText, cannotStart, hung}) {
        recognise({run});
        world.effects.clear();
        dictate();
        EXPECT_EQ(story({"hud"}).at(2), "hud notice Transcription failed warn 3.0");
        EXPECT_EQ(story({"menu"}).at(2), "menu error");
        EXPECT_EQ(state(), State::Idle);
        EXPECT_TRUE(world.wavFiles().isEmpty());
    }
}

TEST_F(Pipeline, emptyTranscript_endsSilently) {
    launch();
    recognise({text("  \n")});
    dictate();
    EXPECT_EQ(story({"menu", "hud", "statistics", "type", "paste", "clipboard"}),
              QStringList({"menu recording", "hud listening", "menu transcribing", "hud transcribing",
                           "menu idle", "hud hidden"}));
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(Pipeline, noticeOfDelivery_staysForItsTime) {
    launch();
    press();
    advance(1);
    release();
    world.actor.settle();
    world.workspace.quit(100);
    world.workspace.runInFront({200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")});
    advance(1);
    EXPECT_EQ(state(), State::Idle);
    ASSERT_TRUE(hud().as<HUD::Notice>());
    advance(5.9);
    EXPECT_TRUE(hud().as<HUD::Notice>());
    advance(0.3);
    EXPECT_TRUE(hud().as<HUD::Hidden>());
    EXPECT_EQ(story({"clipboard", "type"}), QStringList({"clipboard hello world"}));
}

TEST_F(Pipeline, applicationWithoutANameClosed_isCalledTheApp) {
    world.workspace.runInFront({100, QStringLiteral("org.example.editor"), std::nullopt});
    launch();
    hold(1);
    world.workspace.quit(100);
    runToRest();
    EXPECT_EQ(story({"clipboard", "type"}), QStringList({"clipboard hello world"}));
    EXPECT_EQ(story({"hud"}).value(2),
              "hud notice The app closed — text copied to clipboard. Press ⌘V to paste. warn 6.0");
}

TEST_F(Pipeline, languageModelThatIsToTranslate_isNamedInTheStatistics) {
    world.settings.targetLanguageCode.set("de");
    world.settings.sourceLanguageCode.set("en");
    world.languageModel.reason.reset();
    world.languageModel.languages = {"en", "de"};
    launch();
    dictate();
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 2 11 en true false Apple Intelligence"}));
}

TEST_F(Pipeline, sourceThatTheLanguageModelRejects_isTranslatedInTwoHops) {
    world.settings.targetLanguageCode.set("de");
    world.settings.sourceLanguageCode.set("ru");
    world.languageModel.reason.reset();
    world.languageModel.languages = {"en", "de"};
    launch();
    dictate();
    EXPECT_TRUE(world.traces().contains("Target de needs AI; source rejected — using 2-hop translate."));
}

TEST_F(Pipeline, stateStaysTranscribing_untilTheTextIsOnItsWay) {
    launch();
    recognise({text("late", 20)});
    hold(1);
    advance(19.9);
    EXPECT_EQ(state(), State::Transcribing);
    advance(0.1);
    EXPECT_EQ(state(), State::Idle);
}

TEST_F(Pipeline, longRecording_isRecognisedInChunksAndLeavesNone) {
    launch();
    hear(40);
    recognise({text("one two three four"), text("three four five six")});
    dictate();
    EXPECT_EQ(story({"recognise"}), QStringList({"recognise transcribe auto null 25.0",
                                                 "recognise transcribe auto one two three four 17.0"}));
    EXPECT_EQ(story({"paste"}), QStringList({"paste one two three four five six"}));
    EXPECT_TRUE(world.chunkFiles().isEmpty());
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(Pipeline, aChunkThatFails_failsTheDictationAndLeavesNoFiles) {
    launch();
    hear(40);
    recognise({text("one"), failure()});
    dictate();
    EXPECT_EQ(story({"paste", "type", "clipboard", "statistics"}), QStringList());
    EXPECT_TRUE(world.disk.count("talvera-") == 0);
}

TEST_F(Pipeline, failedDeletion_isSwallowed) {
    launch();
    hold(1);
    const auto wav = world.wavFiles().value(0);
    world.disk.failRemovals(wav, EACCES);
    runToRest();
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.wavFiles(), QStringList({wav}));
    EXPECT_EQ(story({"type"}).size(), 1);
}

TEST_F(Pipeline, agentGoneDuringRecognition_theDictationStillEnds) {
    launch();
    hold(1);
    world.agent().stop();
    runToRest();
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(Pipeline, agentGoneAtRelease_endsAtOnce) {
    launch();
    press();
    advance(1);
    release();
    world.actor.post([this] { world.agent().stop(); });
    runToRest();
    EXPECT_EQ(story({"recognise"}), QStringList());
}

} // namespace
