// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"

#include "FakeLanguageModel.h"
#include "PrintQt.h"
#include "SimulatedMainActor.h"
#include "language/PartStream.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace talvera;
using namespace talvera::test;

namespace {

TEST(AICleanup, isAvailable_isWhatTheModelSays) {
    FakeLanguageModel model;
    EXPECT_FALSE(AICleanup::isAvailable(model));
    model.reason.reset();
    EXPECT_TRUE(AICleanup::isAvailable(model));
}

TEST(AICleanup, supportedLanguageCodes_areThoseOfTagsThatNameALanguage) {
    FakeLanguageModel model;
    model.languages = {"en",  "pt-BR",     "pt-PT", "ZH-Hans",   "yue", "und",
                       "mul", "x-private", "",      "i-klingon", "12"};
    EXPECT_EQ(AICleanup::supportedLanguageCodes(model), QSet<QString>({"en", "pt", "zh", "yue"}));
}

TEST(AICleanup, cleanupInstructions_haveALineForTheToneBetweenWhatToDoAndWhatNot) {
    const auto plain = AICleanup::cleanupInstructions(CleanupTone::Conversational);
    EXPECT_TRUE(
        plain.startsWith("Task: clean up a dictation transcript inside <raw>.\n\nDo:\n- Remove filler"));
    EXPECT_TRUE(plain.contains("keep one paragraph).\n\nDo NOT:\n- Translate."));
    EXPECT_TRUE(plain.endsWith("Output only the cleaned text. No preamble, no quotes, no tags."));
    auto casual = plain;
    EXPECT_EQ(AICleanup::cleanupInstructions(CleanupTone::Casual),
              casual.replace("paragraph).\n",
                             "paragraph).\n    - Keep the register very casual. Contractions "
                             "allowed. Short sentences are fine.\n"));
    auto professional = plain;
    EXPECT_EQ(AICleanup::cleanupInstructions(CleanupTone::Professional),
              professional.replace("paragraph).\n",
                                   "paragraph).\n    - Use a formal register. Full sentences. "
                                   "No contractions. No slang.\n"));
}

TEST(AICleanup, cleanupInstructionsWithoutATone_areTheConversationalOnes) {
    EXPECT_EQ(AICleanup::cleanupInstructions(CleanupTone::Off),
              AICleanup::cleanupInstructions(CleanupTone::Conversational));
}

TEST(AICleanup, translationInstructions_nameTheLanguageThreeTimes) {
    const auto text = AICleanup::translationInstructions("Portuguese (Brazil)");
    EXPECT_EQ(text.count("Portuguese (Brazil)"), 3);
    EXPECT_TRUE(text.startsWith(
        "Task: translate the transcript inside <raw> into Portuguese (Brazil).\n\nDo:\n- Drop filler"));
    EXPECT_TRUE(text.contains("- Use natural, idiomatic Portuguese (Brazil). Not word-by-word.\n"));
    EXPECT_TRUE(text.contains("appropriate for Portuguese (Brazil).\n\nDo NOT:\n"));
    EXPECT_TRUE(text.endsWith("- Include the source text or any tags.\n\nOutput only the translation."));
}

TEST(AICleanup, translationInstructionsForANameWithAPlaceholder_takeItAsItStands) {
    EXPECT_EQ(AICleanup::translationInstructions("%1").count("%1"), 3);
}

AIFailure classified(const char* debugText, const char* description = "") {
    return AICleanup::classify(LanguageModelError(debugText, description));
}

TEST(AIFailure, debugText_tellsTheCase) {
    using Case = AIFailure::Case;
    EXPECT_EQ(classified("GenerationError.unsupportedLanguageOrLocale(x)").kind, Case::UnsupportedLanguage);
    EXPECT_EQ(classified("guardrailViolation").kind, Case::Blocked);
    EXPECT_EQ(classified("a refusal of it").kind, Case::Blocked);
    EXPECT_EQ(classified("exceededContextWindowSize").kind, Case::TooLong);
    EXPECT_EQ(classified("rateLimited", "Apple Intelligence is off").kind, Case::RateLimited);
    EXPECT_EQ(classified("assetsUnavailable").kind, Case::ModelLoading);
}

TEST(AIFailure, debugText_isReadWithItsCapitals) {
    EXPECT_EQ(classified("RATELIMITED", "busy"), (AIFailure{AIFailure::Case::Other, "busy"}));
}

TEST(AIFailure, debugTextWithTwoWords_isTheFirstOfTheList) {
    EXPECT_EQ(classified("rateLimited refusal").kind, AIFailure::Case::Blocked);
    EXPECT_EQ(classified("assetsUnavailable rateLimited").kind, AIFailure::Case::RateLimited);
}

TEST(AIFailure, descriptionOfAModelThatIsOff_isReadWithoutItsCapitals) {
    EXPECT_EQ(classified("error 7", "APPLE intelligence has been turned OFF"),
              (AIFailure{AIFailure::Case::Off, {}}));
    EXPECT_EQ(classified("Apple Intelligence is off", "error 7").kind, AIFailure::Case::Other);
}

TEST(AIFailure, otherErrors_speakForThemselves) {
    EXPECT_EQ(AICleanup::classify(std::runtime_error("rateLimited")).kind, AIFailure::Case::RateLimited);
    EXPECT_EQ(AICleanup::classify(std::runtime_error("no memory")),
              (AIFailure{AIFailure::Case::Other, "no memory"}));
    EXPECT_EQ(classified("error 7", "The model is tired.").text(), "The model is tired.");
}

TEST(AIFailure, texts_areWhatTheUserReads) {
    using Case = AIFailure::Case;
    QStringList texts;
    for (const auto kind : allCases<Case>())
        texts << AIFailure{kind, "as it stands"}.text();
    EXPECT_EQ(texts, QStringList({"Spoken language not supported by Apple Intelligence — try target=English",
                                  "Blocked by content policy", "Dictation too long for AI — try shorter",
                                  "AI rate limited — try again in a moment",
                                  "Apple Intelligence model still loading", "Apple Intelligence is off",
                                  "as it stands"}));
}

struct AnswerStream : testing::Test {
    /// Reads an answer to its end, or to the part with that number.
    void read(ModelAnswer answer, int most = 1000) {
        model.setAnswers({std::move(answer)});
        stream = AICleanup::stream(actor, model, "do it", "so um we meet", permissive);
        actor.start([this, most]() -> Task<void> { return readParts(most); });
        EXPECT_TRUE(actor.runToRest(seconds(1000)));
    }
    Task<void> readParts(int most) {
        try {
            while (parts.size() < most) {
                const auto part = co_await stream->next();
                if (!part)
                    break;
                parts << *part;
                times.push_back(actor.elapsed());
            }
        } catch (const LanguageModelError& error) {
            failure = error.debugText();
        }
        isOver = true;
    }

    SimulatedMainActor actor;
    FakeLanguageModel model{actor};
    bool permissive = false;
    std::unique_ptr<PartStream> stream;
    QStringList parts;
    std::vector<double> times;
    QString failure;
    bool isOver = false;
};

TEST_F(AnswerStream, request_isWhatTheModelIsTold) {
    read({});
    ASSERT_EQ(model.requests.size(), 1U);
    EXPECT_EQ(model.requests[0].instructions, "do it");
    EXPECT_EQ(model.requests[0].prompt, "<raw>so um we meet</raw>");
    EXPECT_EQ(model.requests[0].guardrails, LanguageModel::Guardrails::Default);
    permissive = true;
    read({});
    EXPECT_EQ(model.requests[1].guardrails, LanguageModel::Guardrails::PermissiveContentTransformations);
}

TEST_F(AnswerStream, parts_comeAsTheModelWrites) {
    read({{{seconds(1), "1234567890"},
           {seconds(1), "12345678901234567890abcde"},
           {seconds(1), "12345678901234567890abcdefghi"}},
          {}});
    EXPECT_EQ(parts, QStringList({"12345", "6789", "01234567890abcdefghi"}));
    EXPECT_EQ(times, (std::vector{2.0, 3.0, 3.0}));
    EXPECT_TRUE(isOver);
}

TEST_F(AnswerStream, failure_comesBehindThePartsAndDropsWhatIsHeldBack) {
    read({{{{}, "12345678901234567890abcde"}}, LanguageModelError("rateLimited")});
    EXPECT_EQ(parts, QStringList({"12345"}));
    EXPECT_EQ(failure, "rateLimited");
}

TEST_F(AnswerStream, failureAtOnce_comesAtTheFirstRead) {
    read({{}, LanguageModelError("rateLimited")});
    EXPECT_EQ(parts, QStringList());
    EXPECT_EQ(failure, "rateLimited");
}

TEST_F(AnswerStream, closingMark_cancelsTheRequest) {
    read(
        {{{{}, "So we meet.</clean>"}, {seconds(5), "So we meet.</clean> And"}}, LanguageModelError("late")});
    EXPECT_EQ(parts, QStringList({"So we meet."}));
    EXPECT_EQ(failure, QString());
    EXPECT_EQ(model.sessions, 0);
    EXPECT_EQ(actor.elapsed(), 5); // the timer alone was left
}

TEST_F(AnswerStream, streamThatIsDropped_cancelsTheRequest) {
    read({{{{}, "12345678901234567890abcde"}, {seconds(5), "12345678901234567890abcdefg"}}, {}}, 1);
    stream.reset();
    EXPECT_EQ(model.sessions, 0);
    EXPECT_EQ(parts.size(), 1);
}

TEST_F(AnswerStream, readingBehindTheEnd_givesNothing) {
    read({{{{}, "So we meet."}}, {}});
    read({}, 1);
    parts.clear();
    actor.start([this]() -> Task<void> { return readParts(1); });
    actor.settle();
    EXPECT_EQ(parts, QStringList());
}

} // namespace
