// SPDX-License-Identifier: MIT
#include "core/Route.h"

#include "ObservedFakes.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace talvera;
using namespace talvera::test;

namespace {

struct RouteChoice : testing::Test {
    /// The route of a request, translated directly or not.
    Route route(const char* target, const char* source, bool cleanup = false, bool aiAvailable = false,
                bool useAI = false) {
        DictationRequest request;
        request.target = TargetLanguage::byCode(QString(target));
        request.source = source;
        request.cleanup = cleanup;
        request.aiAvailable = aiAvailable;
        request.useAI = useAI;
        if (translatesDirectly(request))
            return Route::TranslateDirect;
        return chooseRoute(request, QStringLiteral("text"), recognizer,
                           [this](const QString& line) { trace << line; });
    }

    FakeLanguageRecognizer recognizer;
    QStringList trace;
};

TEST_F(RouteChoice, targetOff_isPlainWithoutCleanup) {
    EXPECT_EQ(route("off", "auto"), Route::Plain);
    EXPECT_EQ(route("off", "de", true, true), Route::AICleanup);
}

TEST_F(RouteChoice, targetEnglishFromAnythingElse_translatesDirectly) {
    EXPECT_EQ(route("en", "auto"), Route::TranslateDirect);
    EXPECT_EQ(route("en", "de"), Route::TranslateDirect);
    EXPECT_EQ(recognizer.calls, 0);
}

TEST_F(RouteChoice, targetEnglishFromEnglish_isPlainOrCleanup) {
    EXPECT_EQ(route("en", "en"), Route::Plain);
    EXPECT_EQ(route("en", "en", true, true), Route::AICleanup);
    EXPECT_EQ(trace,
              QStringList({"[en-target] src=en (whisperLang=en)", "[en-target] src=en (whisperLang=en)"}));
    EXPECT_EQ(recognizer.calls, 0);
}

TEST_F(RouteChoice, targetEnglishFromGermanWithCleanup_takesASecondPass) {
    EXPECT_EQ(route("en", "de", true, true), Route::SecondPass);
    EXPECT_EQ(recognizer.calls, 0);
}

TEST_F(RouteChoice, targetEnglishFromAutoWithNothingDetected_takesASecondPass) {
    EXPECT_EQ(route("en", "auto", true, true), Route::SecondPass);
    EXPECT_EQ(trace, QStringList({"[en-target] src=auto (whisperLang=auto)"}));
    EXPECT_EQ(recognizer.calls, 1);
}

TEST_F(RouteChoice, targetEnglishFromAutoWithCleanup_goesByTheDetectedLanguage) {
    recognizer.answer = QStringLiteral("en");
    EXPECT_EQ(route("en", "auto", true, true), Route::AICleanup);
    recognizer.answer = QStringLiteral("de");
    EXPECT_EQ(route("en", "auto", true, true), Route::SecondPass);
    EXPECT_EQ(trace.constLast(), "[en-target] src=de (whisperLang=auto)");
}

TEST_F(RouteChoice, targetThatNeedsTheModel_usesIt) {
    EXPECT_EQ(route("de", "auto", false, true, true), Route::AITranslate);
    EXPECT_EQ(route("de", "auto", true, true, true), Route::AITranslate);
}

TEST_F(RouteChoice, sourceThatTheModelRejects_goesInTwoHops) {
    EXPECT_EQ(route("de", "uk", false, true), Route::TwoHopTranslate);
    EXPECT_EQ(trace, QStringList({"Target de needs AI; source rejected — using 2-hop translate."}));
}

TEST_F(RouteChoice, modelOff_fallsBackToEnglish) {
    EXPECT_EQ(route("de", "auto"), Route::WhisperFallback);
    EXPECT_EQ(trace,
              QStringList({"Target de needs AI but unavailable (Apple Intelligence is off) — falling back "
                           "to Whisper --translate."}));
}

} // namespace
