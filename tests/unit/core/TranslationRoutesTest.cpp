// SPDX-License-Identifier: MIT
#include "CoreTest.h"

#include "core/OutputPipeline.h"
#include "delivery/FocusTracker.h"
#include "shell/MenuBarController.h"
#include "speech/WavWriter.h"

using namespace talvera;
using namespace talvera::test;

namespace {

/// Straight to English by the recogniser.
class TranslateDirect : public CoreTest {
protected:
    TranslateDirect() {
        world.settings.targetLanguageCode.set("en");
        launch();
    }
};

TEST_F(TranslateDirect, automaticSource_translatesInOnePassWithoutDetection) {
    dictate();
    EXPECT_EQ(story({"recognise", "statistics", "type"}),
              QStringList({"recognise translateToEnglish auto Speech translated into English with full "
                           "punctuation, commas, periods, question marks, and proper capitalization. 2.0",
                           "statistics 2.0 2 11 auto true false none", "type hello world"}));
    EXPECT_EQ(world.languageRecognizer.calls, 0);
    EXPECT_EQ(world.traces().sliced(1), QStringList({"[timing] whisper(translate-direct) 1.00s",
                                                     "[pipeline] whisper translate-direct (11 chars)",
                                                     "[en-target-direct] typed 11 chars."}));
    EXPECT_EQ(story({"hud"}), QStringList({"hud listening", "hud transcribing", "hud hidden"}));
}

TEST_F(TranslateDirect, statistics_areWrittenBeforeTheDelivery) {
    world.setTextFieldFocused(false);
    dictate();
    EXPECT_EQ(story({"statistics", "hud"}).sliced(2, 2),
              QStringList({"statistics 2.0 2 11 auto true false none",
                           "hud notice No text field focused — text copied to clipboard. Press ⌘V to paste. "
                           "warn 6.0"}));
}

TEST_F(TranslateDirect, nothingRecognised_endsSilently) {
    recognise({text("")});
    dictate();
    EXPECT_EQ(story({"statistics", "type"}), QStringList());
    EXPECT_EQ(story({"hud"}).constLast(), "hud hidden");
    EXPECT_EQ(story({"menu"}).constLast(), "menu idle");
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(TranslateDirect, recognitionFails_tellsTheUser) {
    recognise({failure()});
    dictate();
    EXPECT_TRUE(world.traces().constLast().startsWith("Whisper --translate failed: "));
    EXPECT_EQ(story({"hud"}).at(2), "hud notice Transcription failed warn 3.0");
    EXPECT_EQ(story({"statistics"}), QStringList());
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

/// A target that needs the language model, which isn't there.
class WhisperFallback : public CoreTest {
protected:
    WhisperFallback() {
        world.settings.targetLanguageCode.set("de");
        launch();
    }
};

TEST_F(WhisperFallback, modelOff_givesEnglishAndSaysSo) {
    recognise({text("привет мир"), text("hello world")});
    dictate();
    EXPECT_EQ(story({"statistics", "type", "menu", "hud"}),
              QStringList({"menu recording", "hud listening", "menu transcribing", "hud transcribing",
                           "statistics 2.0 2 10 auto true false none", "hud transcribing",
                           "hud notice Whisper translation — Apple Intelligence unavailable info 3.0",
                           "menu idle", "type hello world", "hud hidden"}));
    EXPECT_EQ(story({"recognise"}).size(), 2);
    EXPECT_TRUE(world.traces().contains(
        "Running Whisper --translate fallback (originalTarget=de, reason=Apple Intelligence is off)."));
    EXPECT_EQ(world.traces().constLast(),
              "Fallback typed 11 chars in English (originalTarget=de, reason=Apple Intelligence is off).");
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(WhisperFallback, nothingRecognisedInTheSecondPass_saysSo) {
    recognise({text("привет"), text("")});
    hold(1);
    advance(2);
    EXPECT_EQ(story({"hud"}).constLast(), "hud notice Nothing recognized warn 3.0");
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(story({"type", "paste", "clipboard"}), QStringList());
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(WhisperFallback, secondPassFails_tellsTheUserAndDropsTheText) {
    recognise({text("привет"), failure()});
    dictate();
    EXPECT_TRUE(world.traces().constLast().startsWith("Whisper fallback also failed: "));
    EXPECT_EQ(story({"menu"}),
              QStringList({"menu recording", "menu transcribing", "menu error", "menu idle"}));
    EXPECT_EQ(story({"type", "paste", "clipboard"}), QStringList());
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(WhisperFallback, cleanupAskedFor_isOffWithoutTheModel) {
    world.settings.aiCleanupEnabled.set(true);
    dictate();
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 2 11 auto true false none"}));
}

/// The recogniser's second pass into English, after a transcription that clean-up had asked for. A request
/// for clean-up can't come from the settings of a machine without a language model, so most are made by hand.
class SecondPass : public CoreTest {
protected:
    SecondPass() { launch(); }

    void run(const char* source) {
        Dictation dictation;
        dictation.request.target = TargetLanguage::byCode(QStringLiteral("en"));
        dictation.request.source = source;
        dictation.request.cleanup = true;
        dictation.request.aiAvailable = true;
        dictation.request.wav = QStringLiteral("/run/talvera/talvera-test.wav");
        dictation.request.audioSeconds = 2;
        world.disk.write(dictation.request.wav, wav());
        dictation.focusSnapshot = world.agent().focus.captureFocusSnapshot();
        world.agent().menuBar.state.set(State::Transcribing);
        world.effects.clear();
        pipeline = world.agent().makePipeline();
        world.actor.start([this, dictation] { return pipeline->runPipeline(dictation); });
        runToRest();
    }
    static QByteArray wav() { return wavBytes(std::vector<std::int16_t>(32000, 8000), 16000); }

    std::shared_ptr<OutputPipeline> pipeline;
};

TEST_F(SecondPass, germanSpeechWithCleanup_runsTheToolTwiceAndCleansNothing) {
    recognise({text("hallo welt"), text("hello world")});
    run("de");
    const auto passes = story({"recognise"});
    ASSERT_EQ(passes.size(), 2);
    EXPECT_TRUE(passes[0].startsWith("recognise transcribe de"));
    EXPECT_TRUE(passes[1].startsWith("recognise translateToEnglish de"));
    EXPECT_EQ(story({"statistics", "paste"}),
              QStringList({"statistics 2.0 2 10 de true true Unavailable", "paste hello world"}));
    EXPECT_EQ(story({"hud"}).filter("transcribing").size(), 1); // since the second pass began
    EXPECT_EQ(world.traces().constLast(), "[en-target] Whisper --translate typed 11 chars.");
    EXPECT_TRUE(world.wavFiles().isEmpty());
    EXPECT_EQ(state(), State::Idle);
}

TEST_F(SecondPass, automaticSourceDetectedAsGerman_takesTheSecondPass) {
    world.languageRecognizer.answer = QStringLiteral("de");
    recognise({text("hallo welt"), text("hello world")});
    run("auto");
    EXPECT_EQ(story({"recognise"}).size(), 2);
    EXPECT_EQ(world.languageRecognizer.calls, 1);
    EXPECT_EQ(story({"statistics", "paste"}),
              QStringList({"statistics 2.0 2 10 auto true true Unavailable", "paste hello world"}));
}

TEST_F(SecondPass, automaticSourceWithNothingDetected_takesTheSecondPass) {
    world.languageRecognizer.answer.reset();
    run("auto");
    EXPECT_EQ(story({"recognise"}).size(), 2);
    EXPECT_TRUE(world.traces().contains("[en-target] src=auto (whisperLang=auto)"));
}

TEST_F(SecondPass, automaticSourceDetectedAsEnglish_isInsertedWithoutAModelToCleanIt) {
    world.languageRecognizer.answer = QStringLiteral("en");
    run("auto");
    EXPECT_EQ(story({"recognise"}).size(), 1);
    EXPECT_EQ(story({"paste"}), QStringList({"paste hello world"}));
}

TEST_F(SecondPass, nothingRecognisedInTheSecondPass_insertsTheFirstTranscript) {
    recognise({text("hallo welt"), text("")});
    run("de");
    EXPECT_EQ(story({"paste"}), QStringList({"paste hallo welt"}));
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(SecondPass, secondPassFails_dropsTheFirstTranscript) {
    recognise({text("hallo welt"), failure()});
    run("de");
    EXPECT_EQ(story({"paste", "type", "clipboard"}), QStringList());
    EXPECT_EQ(story({"menu"}), QStringList({"menu error", "menu idle"}));
    EXPECT_TRUE(world.traces().constLast().startsWith("Whisper --translate failed: "));
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(SecondPass, settingsOnAMachineWithAModel_leadThereToo) {
    world.languageModel.reason.reset();
    world.settings.targetLanguageCode.set("en");
    world.settings.sourceLanguageCode.set("de");
    world.settings.aiCleanupEnabled.set(true);
    recognise({text("hallo welt"), text("hello world")});
    dictate();
    EXPECT_EQ(story({"statistics", "type"}),
              QStringList({"statistics 2.0 2 10 de true true Apple Intelligence", "type hello world"}));
    EXPECT_EQ(world.traces().constFirst(),
              "[cfg] target=en srcLang=de cleanup=on aiAvail=true aiSrcOK=false useAI=false audio=2.00s");
}

TEST_F(SecondPass, cleanupToneOff_asksForNoCleanup) {
    world.languageModel.reason.reset();
    world.settings.targetLanguageCode.set("en");
    world.settings.aiCleanupEnabled.set(true);
    world.settings.cleanupTone.set(CleanupTone::Off);
    dictate();
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 2 11 auto true false none"}));
    EXPECT_TRUE(world.traces().constFirst().contains(" cleanup=off "));
}

TEST_F(SecondPass, modelAvailable_isNamedInTheStatistics) {
    world.languageModel.reason.reset();
    run("de");
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 2 11 de true true Apple Intelligence"}));
}

} // namespace
