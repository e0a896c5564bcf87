// SPDX-License-Identifier: MIT
// The routes on which the language model writes the text.
#include "CoreTest.h"
#include "language/AICleanup.h"
#include "shell/MenuBarController.h"

using namespace talvera;
using namespace talvera::test;

namespace {

const auto answered = QStringLiteral("So we meet at five, and then we talk.");

/// A machine with a language model that takes English and German.
class ModelRoute : public CoreTest {
protected:
    ModelRoute() {
        world.languageModel.reason.reset();
        world.languageModel.languages = {"en", "de"};
        recognise({text("so um we meet"), text("we meet")});
    }

    void write(std::vector<ModelAnswer> answers) { world.languageModel.setAnswers(std::move(answers)); }

    /// The answer, one character after another.
    static ModelAnswer letterByLetter(const QString& whole, double pause = 0.1) {
        ModelAnswer answer;
        for (qsizetype length = 1; length <= whole.size(); ++length)
            answer.snapshots.push_back({seconds(pause), whole.left(length)});
        return answer;
    }
    /// The answer in one piece, after half a second.
    static ModelAnswer whole(const QString& content) { return {{{seconds(0.5), content}}, {}}; }
    /// The model breaks off at once, or behind an answer so far.
    static ModelAnswer failing(const char* debugText, ModelAnswer begun = {}) {
        begun.failure.emplace(QString::fromLatin1(debugText), QStringLiteral("in its own words"));
        return begun;
    }

    QString typed() const {
        QString all;
        for (const auto& effect : world.effects) {
            if (effect.effect == "type")
                all += QString::fromStdString(effect.fields["text"].get<std::string>());
        }
        return all;
    }
    QStringList notices() const { return story({"hud"}).filter("hud notice"); }
    /// The trace lines of the route alone.
    QStringList routeTraces() const {
        const auto lines = world.traces();
        return lines.sliced(lines.indexOf(QStringLiteral("Transcript received (13 chars).")) + 1);
    }
    const std::vector<ModelRequestSeen>& asked() const { return world.languageModel.requests; }
    void expectItIsOver() {
        EXPECT_EQ(state(), State::Idle);
        EXPECT_TRUE(world.wavFiles().isEmpty());
        EXPECT_EQ(world.languageModel.sessions, 0);
    }
    void launch() {
        CoreTest::launch();
        world.languageModel.requests.clear(); // that of the warm-up
    }
};

class Cleanup : public ModelRoute {
protected:
    Cleanup() {
        world.settings.aiCleanupEnabled.set(true);
        launch();
    }
};

TEST_F(Cleanup, answer_isTypedWhileTheModelWrites) {
    write({letterByLetter(answered)});
    hold(2);
    advance(1 + 2.5); // the recogniser's second, and twenty-five characters
    EXPECT_EQ(typed(), answered.left(5));
    EXPECT_EQ(state(), State::Transcribing);
    runToRest();
    EXPECT_EQ(typed(), answered);
    EXPECT_EQ(story({"menu", "hud"}),
              QStringList({"menu recording", "hud listening", "menu transcribing", "hud transcribing",
                           "hud translating cleanup", "menu idle", "hud hidden"}));
    EXPECT_EQ(routeTraces(), QStringList({"AI Cleanup started (backend=Apple Intelligence).",
                                          "AI Cleanup done in 3.70s (37 chars)."}));
    EXPECT_EQ(story({"recognise"}).size(), 1);
    expectItIsOver();
}

TEST_F(Cleanup, request_hasTheInstructionsAndTheTranscriptBetweenItsTags) {
    write({whole(answered)});
    dictate();
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(asked()[0].instructions, AICleanup::cleanupInstructions(CleanupTone::Conversational));
    EXPECT_EQ(asked()[0].prompt, "<raw>so um we meet</raw>");
    EXPECT_EQ(asked()[0].guardrails, LanguageModel::Guardrails::Default);
}

TEST_F(Cleanup, tone_isThatOfTheMomentAtWhichItBegins) {
    write({whole(answered)});
    hold(2);
    world.settings.cleanupTone.set(CleanupTone::Professional);
    runToRest();
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(asked()[0].instructions, AICleanup::cleanupInstructions(CleanupTone::Professional));
}

TEST_F(Cleanup, toneTurnedOffAfterTheRelease_cleansUpAsItWasSpoken) {
    write({whole(answered)});
    hold(2);
    world.settings.cleanupTone.set(CleanupTone::Off);
    runToRest();
    EXPECT_EQ(typed(), answered);
}

TEST_F(Cleanup, longDictation_isPastedOnceAtTheEnd) {
    hear(20);
    write({letterByLetter(answered)});
    hold(2);
    advance(1 + 3.6);
    EXPECT_EQ(story({"paste", "type", "clipboard"}), QStringList());
    runToRest();
    EXPECT_EQ(story({"paste", "type", "clipboard"}), QStringList({"paste " + answered}));
    expectItIsOver();
}

TEST_F(Cleanup, modelThatFailsAtOnce_givesTheRawTranscriptAndSaysWhy) {
    write({failing("rateLimited")});
    hold(2);
    advance(1);
    EXPECT_EQ(
        story({"type", "hud", "menu"}).sliced(4),
        QStringList({"hud translating cleanup", "hud notice AI rate limited — try again in a moment warn 3.0",
                     "menu idle", "type so um we meet"}));
    EXPECT_EQ(routeTraces(),
              QStringList({"AI Cleanup started (backend=Apple Intelligence).",
                           "AI Cleanup failed: AI rate limited — try again in a moment. Falling back to raw "
                           "transcript."}));
    expectItIsOver();
}

TEST_F(Cleanup, noticeOfTheFailure_staysForThreeSeconds) {
    write({failing("rateLimited")});
    hold(2);
    advance(1 + 2.9);
    EXPECT_TRUE(hud().as<HUD::Notice>());
    advance(0.3);
    EXPECT_TRUE(hud().as<HUD::Hidden>());
}

TEST_F(Cleanup, modelThatFailsWhileAllIsHeldBack_hasGivenNoPartYet) {
    write({failing("refusal", letterByLetter("So we meet at five."))});
    dictate();
    EXPECT_EQ(typed(), "so um we meet");
    EXPECT_EQ(notices(), QStringList({"hud notice Blocked by content policy warn 3.0"}));
}

TEST_F(Cleanup, modelThatFailsAfterTwoPartsOfATypedText_leavesThem) {
    write({failing("exceededContextWindowSize", letterByLetter(answered.left(22)))});
    dictate();
    EXPECT_EQ(story({"type"}), QStringList({"type " + answered.left(1), "type " + answered.mid(1, 1)}));
    EXPECT_EQ(notices(), QStringList({"hud notice Dictation too long for AI — try shorter warn 3.0"}));
    expectItIsOver();
}

TEST_F(Cleanup, modelThatFailsAfterTwoPartsOfAPastedText_leavesNothing) {
    hear(20);
    write({failing("exceededContextWindowSize", letterByLetter(answered.left(22)))});
    dictate();
    EXPECT_EQ(story({"type", "paste", "clipboard"}), QStringList());
    EXPECT_EQ(notices(), QStringList({"hud notice Dictation too long for AI — try shorter warn 3.0"}));
    expectItIsOver();
}

TEST_F(Cleanup, longDictationWhoseModelFailsAtOnce_isPastedRaw) {
    hear(20);
    write({failing("assetsUnavailable")});
    dictate();
    EXPECT_EQ(story({"paste"}), QStringList({"paste so um we meet"}));
    EXPECT_EQ(notices(), QStringList({"hud notice Apple Intelligence model still loading warn 3.0"}));
}

TEST_F(Cleanup, failureWithoutAWordOfOurs_isToldInItsOwn) {
    write({failing("somethingNew")});
    dictate();
    EXPECT_EQ(notices(), QStringList({"hud notice in its own words warn 3.0"}));
}

TEST_F(Cleanup, emptyAnswer_typesNothing) {
    write({whole("<raw></raw>")});
    dictate();
    EXPECT_EQ(story({"type", "paste", "clipboard"}), QStringList());
    EXPECT_EQ(routeTraces().constLast(), "AI Cleanup done in 0.50s (0 chars).");
    expectItIsOver();
}

TEST_F(Cleanup, modelThatGoesOnBehindItsEnd_isCutOffAndTheRouteEndsAtOnce) {
    auto answer = letterByLetter("<clean>So we meet.</clean> And another thing", 0.1);
    write({answer});
    hold(2);
    advance(1 + 3.4);
    EXPECT_EQ(typed(), "So we meet.");
    expectItIsOver();
}

TEST_F(Cleanup, focusThatIsGoneAtTheFirstPart_leavesTheWholeAnswerOnTheClipboard) {
    write({letterByLetter(answered)});
    hold(2);
    world.workspace.quit(100);
    world.workspace.runInFront({200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")});
    runToRest();
    EXPECT_EQ(typed(), QString());
    EXPECT_EQ(story({"clipboard"}).constLast(), "clipboard " + answered);
    EXPECT_EQ(notices(), QStringList({"hud notice Editor closed — text copied to clipboard. Press ⌘V to "
                                      "paste. warn 6.0"}));
}

TEST_F(Cleanup, focusThatIsGoneWhenALongAnswerIsThere_isToldOnTheHUD) {
    hear(20);
    write({letterByLetter(answered)});
    hold(2);
    advance(1 + 2);
    world.workspace.quit(100);
    world.workspace.runInFront({200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")});
    runToRest();
    EXPECT_EQ(story({"clipboard", "paste"}), QStringList({"clipboard " + answered}));
    EXPECT_EQ(notices().size(), 1);
}

TEST_F(Cleanup, pressDuringIt_isIgnored) {
    write({letterByLetter(answered)});
    hold(2);
    advance(2);
    hold(2);
    runToRest();
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
    EXPECT_EQ(typed(), answered);
}

TEST_F(Cleanup, modelGoneSinceTheRelease_isNamedUnavailable) {
    write({failing("assetsUnavailable")});
    hold(2);
    world.languageModel.reason = LanguageModel::UnavailableReason::IntelligenceOff;
    world.actor.advance(seconds(2));
    EXPECT_EQ(routeTraces().constFirst(), "AI Cleanup started (backend=Unavailable).");
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 4 13 auto false true Unavailable"}));
    EXPECT_EQ(typed(), "so um we meet");
    world.languageModel.reason.reset();
}

TEST_F(Cleanup, targetEnglishAndEnglishHeard_cleansUpInEnglish) {
    world.settings.targetLanguageCode.set("en");
    world.languageRecognizer.answer = QStringLiteral("en");
    write({whole(answered)});
    dictate();
    EXPECT_EQ(typed(), answered);
    EXPECT_EQ(story({"recognise"}).size(), 1);
    EXPECT_EQ(routeTraces().constFirst(), "[en-target] src=en (whisperLang=auto)");
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 4 13 auto true true Apple Intelligence"}));
}

TEST_F(Cleanup, targetEnglishAndGermanHeard_translatesAndCleansNothing) {
    world.settings.targetLanguageCode.set("en");
    world.languageRecognizer.answer = QStringLiteral("de");
    dictate();
    EXPECT_EQ(typed(), "we meet");
    EXPECT_TRUE(asked().empty());
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 4 13 auto true true Apple Intelligence"}));
}

TEST_F(Cleanup, nothingRecognised_asksNothing) {
    recognise({text("")});
    dictate();
    EXPECT_TRUE(asked().empty());
    expectItIsOver();
}

class ModelTranslation : public ModelRoute {
protected:
    ModelTranslation() {
        world.settings.targetLanguageCode.set("de");
        launch();
    }
};

TEST_F(ModelTranslation, automaticSource_isTranslatedByTheModelAlone) {
    write({letterByLetter("Wir treffen uns um fünf, und dann reden wir.")});
    dictate();
    EXPECT_EQ(typed(), "Wir treffen uns um fünf, und dann reden wir.");
    EXPECT_EQ(story({"recognise"}).size(), 1);
    EXPECT_EQ(story({"hud"}),
              QStringList({"hud listening", "hud transcribing", "hud translating German", "hud hidden"}));
    EXPECT_EQ(routeTraces(), QStringList({"AI Translate to de started (backend=Apple Intelligence).",
                                          "AI Translate done in 4.40s (44 chars)."}));
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(asked()[0].instructions, AICleanup::translationInstructions("German"));
    EXPECT_EQ(asked()[0].prompt, "<raw>so um we meet</raw>");
    expectItIsOver();
}

TEST_F(ModelTranslation, cleanupAskedForToo_isCountedAndLeftToTheTranslation) {
    world.settings.aiCleanupEnabled.set(true);
    write({whole("Wir treffen uns.")});
    dictate();
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(asked()[0].instructions, AICleanup::translationInstructions("German"));
    EXPECT_EQ(story({"statistics"}), QStringList({"statistics 2.0 4 13 auto true true Apple Intelligence"}));
}

TEST_F(ModelTranslation, longDictation_isPastedOnce) {
    hear(20);
    write({letterByLetter("Wir treffen uns um fünf, und dann reden wir.")});
    dictate();
    EXPECT_EQ(story({"paste", "type"}), QStringList({"paste Wir treffen uns um fünf, und dann reden wir."}));
}

TEST_F(ModelTranslation, modelThatFailsAtOnce_givesTheTextInItsOwnLanguageAndSaysWhy) {
    write({failing("guardrailViolation")});
    dictate();
    EXPECT_EQ(typed(), "so um we meet");
    EXPECT_EQ(notices(), QStringList({"hud notice Blocked by content policy warn 3.0"}));
    EXPECT_EQ(routeTraces().constLast(), "AI Translate failed: Blocked by content policy.");
    EXPECT_EQ(story({"recognise"}).size(), 1);
    expectItIsOver();
}

TEST_F(ModelTranslation, languageThatTheModelRefusesAtOnce_goesInTwoHopsWithoutANotice) {
    write({failing("unsupportedLanguageOrLocale"), whole("Wir treffen uns.")});
    dictate();
    EXPECT_EQ(typed(), "Wir treffen uns.");
    EXPECT_EQ(notices(), QStringList());
    EXPECT_EQ(story({"recognise"}).size(), 2);
    EXPECT_EQ(story({"menu"}), QStringList({"menu recording", "menu transcribing", "menu idle"}));
    EXPECT_EQ(routeTraces(),
              QStringList({"AI Translate to de started (backend=Apple Intelligence).",
                           "AI Translate failed: Spoken language not supported by Apple Intelligence — try "
                           "target=English.",
                           "2-hop AI Translate to de started (whisperLang=auto, backend=Apple Intelligence).",
                           "2-hop stage 1 done: 7 chars English.",
                           "2-hop AI Translate done in 0.50s (16 chars)."}));
    ASSERT_EQ(asked().size(), 2U);
    EXPECT_EQ(asked()[1].prompt, "<raw>we meet</raw>");
    EXPECT_EQ(story({"statistics"}).size(), 1);
    expectItIsOver();
}

TEST_F(ModelTranslation, languageThatIsRefusedAfterTheFirstPart_givesNothingMoreAndSaysWhy) {
    write({failing("unsupportedLanguageOrLocale", letterByLetter(answered.left(22)))});
    dictate();
    EXPECT_EQ(typed(), answered.left(2));
    EXPECT_EQ(story({"recognise"}).size(), 1);
    EXPECT_EQ(notices(), QStringList({"hud notice Spoken language not supported by Apple Intelligence — try "
                                      "target=English warn 3.0"}));
    expectItIsOver();
}

TEST_F(ModelTranslation, modelOff_fallsBackToEnglish) {
    world.languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    dictate();
    EXPECT_EQ(typed(), "we meet");
    EXPECT_TRUE(asked().empty());
    EXPECT_EQ(notices(),
              QStringList({"hud notice Whisper translation — Apple Intelligence unavailable info 3.0"}));
}

/// Speech in a language that the model doesn't take.
class TwoHops : public ModelRoute {
protected:
    TwoHops() {
        world.settings.targetLanguageCode.set("de");
        world.settings.sourceLanguageCode.set("uk");
        launch();
    }
};

TEST_F(TwoHops, speech_goesToEnglishByTheRecogniserAndOnByTheModel) {
    write({whole("Wir treffen uns.")});
    dictate();
    EXPECT_EQ(typed(), "Wir treffen uns.");
    const auto passes = story({"recognise"});
    ASSERT_EQ(passes.size(), 2);
    EXPECT_TRUE(passes[1].startsWith("recognise translateToEnglish uk"));
    EXPECT_EQ(routeTraces(),
              QStringList({"Target de needs AI; source rejected — using 2-hop translate.",
                           "2-hop AI Translate to de started (whisperLang=uk, backend=Apple Intelligence).",
                           "2-hop stage 1 done: 7 chars English.",
                           "2-hop AI Translate done in 0.50s (16 chars)."}));
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(asked()[0].instructions, AICleanup::translationInstructions("German"));
    EXPECT_EQ(asked()[0].prompt, "<raw>we meet</raw>");
    EXPECT_EQ(story({"hud"}),
              QStringList({"hud listening", "hud transcribing", "hud translating German", "hud hidden"}));
    expectItIsOver();
}

TEST_F(TwoHops, recogniserThatFailsAtTheFirst_endsInItsFailure) {
    recognise({text("so um we meet"), failure()});
    dictate();
    EXPECT_TRUE(world.traces().constLast().startsWith("2-hop stage 1 (Whisper --translate) failed: "));
    EXPECT_EQ(story({"menu"}),
              QStringList({"menu recording", "menu transcribing", "menu error", "menu idle"}));
    EXPECT_EQ(notices(), QStringList({"hud notice Transcription failed warn 3.0"}));
    EXPECT_TRUE(asked().empty());
    expectItIsOver();
}

TEST_F(TwoHops, nothingRecognisedAtTheFirst_endsSilently) {
    recognise({text("so um we meet"), text("")});
    dictate();
    EXPECT_EQ(story({"type", "paste", "clipboard"}), QStringList());
    EXPECT_EQ(notices(), QStringList());
    EXPECT_TRUE(asked().empty());
    expectItIsOver();
}

TEST_F(TwoHops, modelThatFailsAtOnce_givesTheEnglishTextAndSaysWhy) {
    write({failing("assetsUnavailable")});
    dictate();
    EXPECT_EQ(typed(), "we meet");
    EXPECT_EQ(notices(), QStringList({"hud notice Apple Intelligence model still loading warn 3.0"}));
    EXPECT_EQ(routeTraces().constLast(),
              "2-hop stage 2 failed: Apple Intelligence model still loading. Inserting English fallback.");
    expectItIsOver();
}

TEST_F(TwoHops, languageThatTheModelRefusesAgain_givesTheEnglishText) {
    write({failing("unsupportedLanguageOrLocale")});
    dictate();
    EXPECT_EQ(typed(), "we meet");
    EXPECT_EQ(story({"recognise"}).size(), 2);
    EXPECT_EQ(notices(), QStringList({"hud notice Spoken language not supported by Apple Intelligence — try "
                                      "target=English warn 3.0"}));
    expectItIsOver();
}

TEST_F(TwoHops, modelThatFailsAfterTheFirstPart_givesNothingMore) {
    write({failing("rateLimited", letterByLetter(answered.left(22)))});
    dictate();
    EXPECT_EQ(typed(), answered.left(2));
    EXPECT_EQ(notices(), QStringList({"hud notice AI rate limited — try again in a moment warn 3.0"}));
    expectItIsOver();
}

/// What a press does for a model that has to load first.
class ModelInTime : public ModelRoute {
protected:
    int preparationsOfAPress() {
        launch();
        hold(1);
        return world.languageModel.preparations;
    }
};

TEST_F(ModelInTime, pressWhoseDictationWillBeCleanedUp_letsItLoadWhileTheUserSpeaks) {
    world.settings.aiCleanupEnabled.set(true);
    launch();
    press();
    advance(0.5);
    EXPECT_EQ(world.languageModel.preparations, 0); // it may be a touch
    advance(0.2);
    EXPECT_EQ(world.languageModel.preparations, 1);
    release();
}

TEST_F(ModelInTime, pressWhoseDictationWillBeTranslated_doesToo) {
    world.settings.targetLanguageCode.set("de");
    EXPECT_EQ(preparationsOfAPress(), 1);
}

TEST_F(ModelInTime, plainDictation_leavesItAtRest) {
    EXPECT_EQ(preparationsOfAPress(), 0);
}

TEST_F(ModelInTime, dictationIntoEnglish_leavesItAtRest) {
    world.settings.targetLanguageCode.set("en");
    EXPECT_EQ(preparationsOfAPress(), 0);
}

TEST_F(ModelInTime, cleanupWithoutATone_leavesItAtRest) {
    world.settings.aiCleanupEnabled.set(true);
    world.settings.cleanupTone.set(CleanupTone::Off);
    EXPECT_EQ(preparationsOfAPress(), 0);
}

} // namespace
