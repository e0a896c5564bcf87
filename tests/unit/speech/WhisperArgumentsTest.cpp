// SPDX-License-Identifier: MIT
#include "speech/WhisperArguments.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const auto wav = QStringLiteral("/tmp/a.wav");
const auto model = QStringLiteral("/models/m.bin");
const auto english = QStringLiteral(
    "Speech translated into English with full punctuation, commas, periods, question marks, and proper "
    "capitalization.");

QStringList arguments(WhisperMode mode, const QString& language, std::optional<QString> prompt = {},
                      std::optional<double> duration = 3.0) {
    return whisperArguments(wav, model, duration, mode, language, prompt);
}

/// The argument behind `option`; empty when the option isn't there.
QString valueOf(const QStringList& list, const QString& option) {
    const auto index = list.indexOf(option);
    return index < 0 ? QString() : list.value(index + 1);
}

TEST(WhisperArguments, shortClip_hasExactlyTheseInThisOrder) {
    const QStringList expected = {
        "-m",
        "/models/m.bin",
        "-f",
        wav,
        "-l",
        "en",
        "-nt",
        "-otxt",
        "-of",
        "/tmp/a",
        "-t",
        "10",
        "-bs",
        "1",
        "-bo",
        "1",
        "-sns",
        "-nf",
        "--prompt",
        "Speech with full punctuation: commas, periods, question marks, and proper capitalization."};
    EXPECT_EQ(arguments(WhisperMode::Transcribe, "en"), expected);
}

TEST(WhisperArguments, longClipInTranslation_hasExactlyTheseInThisOrder) {
    const QStringList expected = {"-m",    model, "-f",     wav,           "-l",       "de",   "-nt",
                                  "-otxt", "-of", "/tmp/a", "-t",          "10",       "-bs",  "5",
                                  "-bo",   "5",   "-sns",   "--translate", "--prompt", english};
    EXPECT_EQ(arguments(WhisperMode::TranslateToEnglish, "de", {}, 6.0), expected);
}

TEST(WhisperArguments, emptyLanguage_becomesAutoWithoutPrompt) {
    const auto list = arguments(WhisperMode::Transcribe, "");
    EXPECT_EQ(valueOf(list, "-l"), "auto");
    EXPECT_FALSE(list.contains("--prompt"));
}

TEST(WhisperArguments, autoInTranslation_hasTheEnglishPrompt) {
    const auto list = arguments(WhisperMode::TranslateToEnglish, "auto");
    EXPECT_EQ(valueOf(list, "-l"), "auto");
    EXPECT_TRUE(list.contains("--translate"));
    EXPECT_EQ(valueOf(list, "--prompt"), english);
}

TEST(WhisperArguments, languageWithoutSentence_hasNoPrompt) {
    const auto list = arguments(WhisperMode::Transcribe, "nl");
    EXPECT_EQ(valueOf(list, "-l"), "nl");
    EXPECT_FALSE(list.contains("--prompt"));
}

TEST(WhisperArguments, upperCaseCode_hasNoPrompt) {
    const auto list = arguments(WhisperMode::Transcribe, "EN");
    EXPECT_EQ(valueOf(list, "-l"), "EN");
    EXPECT_FALSE(list.contains("--prompt"));
}

TEST(WhisperArguments, givenPrompt_winsInBothModes) {
    EXPECT_EQ(valueOf(arguments(WhisperMode::Transcribe, "en", "and then"), "--prompt"), "and then");
    EXPECT_EQ(valueOf(arguments(WhisperMode::TranslateToEnglish, "de", "and then"), "--prompt"), "and then");
}

TEST(WhisperArguments, emptyPrompt_suppressesTheOption) {
    EXPECT_FALSE(arguments(WhisperMode::Transcribe, "en", "").contains("--prompt"));
    EXPECT_FALSE(arguments(WhisperMode::TranslateToEnglish, "en", "").contains("--prompt"));
}

TEST(WhisperArguments, unknownDuration_countsAsLong) {
    const auto list = arguments(WhisperMode::Transcribe, "nl", {}, std::nullopt);
    EXPECT_EQ(valueOf(list, "-bs"), "5");
    EXPECT_EQ(valueOf(list, "-bo"), "5");
    EXPECT_FALSE(list.contains("-nf"));
}

TEST(WhisperArguments, sixSeconds_isWhereTheBeamBegins) {
    const auto exactly = arguments(WhisperMode::Transcribe, "nl", {}, wavDurationSeconds(192044));
    EXPECT_EQ(valueOf(exactly, "-bs"), "5");
    EXPECT_EQ(valueOf(exactly, "-bo"), "5");
    EXPECT_FALSE(exactly.contains("-nf"));
    const auto below = arguments(WhisperMode::Transcribe, "nl", {}, wavDurationSeconds(192042));
    EXPECT_EQ(valueOf(below, "-bs"), "1");
    EXPECT_EQ(valueOf(below, "-bo"), "1");
    EXPECT_EQ(below.indexOf("-nf"), below.indexOf("-sns") + 1);
}

TEST(WhisperArguments, fileShorterThanItsHeader_lastsNoTimeAndCountsAsShort) {
    EXPECT_EQ(wavDurationSeconds(10), 0.0);
    EXPECT_TRUE(arguments(WhisperMode::Transcribe, "nl", {}, wavDurationSeconds(10)).contains("-nf"));
    EXPECT_EQ(wavDurationSeconds(44), 0.0);
    EXPECT_EQ(wavDurationSeconds(32044), 1.0);
}

TEST(WhisperArguments, outputBase_losesOnlyTheLastExtension) {
    EXPECT_EQ(outputBase("/tmp/a.b.wav"), "/tmp/a.b");
    EXPECT_EQ(outputBase("/tmp.d/a"), "/tmp.d/a");
    EXPECT_EQ(outputBase("/tmp/.wav"), "/tmp/.wav");
    EXPECT_EQ(outputBase("/tmp/a."), "/tmp/a.");
    EXPECT_EQ(outputBase("/tmp/with \"blanks\" 'n quotes.wav"), "/tmp/with \"blanks\" 'n quotes");
}

TEST(WhisperArguments, eachLanguageOfTheTable_hasItsSentence) {
    const std::vector<std::pair<QString, QString>> rows = {
        {"en", "Speech with full punctuation: commas, periods, question marks, and proper capitalization."},
        {"ru", "Речь с полной пунктуацией: запятые, точки, вопросительные знаки, заглавные буквы."},
        {"uk", "Мовлення з повною пунктуацією: коми, крапки, знаки питання, великі літери."},
        {"es",
         "Discurso con puntuación completa: comas, puntos, signos de interrogación y mayúsculas correctas."},
        {"fr", "Discours avec ponctuation complète : virgules, points, points d'interrogation et majuscules "
               "correctes."},
        {"de", "Sprache mit vollständiger Zeichensetzung: Kommas, Punkte, Fragezeichen und korrekter "
               "Großschreibung."},
        {"it",
         "Discorso con punteggiatura completa: virgole, punti, punti interrogativi e maiuscole corrette."},
        {"pt",
         "Discurso com pontuação completa: vírgulas, pontos, pontos de interrogação e maiúsculas corretas."}};
    for (const auto& [code, sentence] : rows) {
        EXPECT_EQ(defaultPrompt(WhisperMode::Transcribe, code), sentence) << code.toStdString();
        EXPECT_EQ(defaultPrompt(WhisperMode::TranslateToEnglish, code), english) << code.toStdString();
    }
    for (const auto* code : {"auto", "", "nl", "En", "eng"})
        EXPECT_EQ(defaultPrompt(WhisperMode::Transcribe, code), std::nullopt) << code;
}

} // namespace
