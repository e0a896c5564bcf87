// SPDX-License-Identifier: MIT
#include "speech/WhisperArguments.h"

#include "speech/WavWriter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace talvera {

namespace {

constexpr double wavBytesPerSecond = 32000.0;

/// Below this the decoder is greedy and doesn't try again; from here on it spends a beam search.
constexpr double shortClipSeconds = 6.0;

constexpr auto englishTranslationPrompt =
    u"Speech translated into English with full punctuation, commas, periods, question marks, and proper "
    u"capitalization.";

constexpr std::array<std::pair<const char16_t*, const char16_t*>, 8> transcriptionPrompts = {{
    {u"en", u"Speech with full punctuation: commas, periods, question marks, and proper capitalization."},
    {u"ru", u"Речь с полной пунктуацией: запятые, точки, вопросительные знаки, заглавные буквы."},
    {u"uk", u"Мовлення з повною пунктуацією: коми, крапки, знаки питання, великі літери."},
    {u"es",
     u"Discurso con puntuación completa: comas, puntos, signos de interrogación y mayúsculas correctas."},
    {u"fr", u"Discours avec ponctuation complète : virgules, points, points d'interrogation et majuscules "
            u"correctes."},
    {u"de", u"Sprache mit vollständiger Zeichensetzung: Kommas, Punkte, Fragezeichen und korrekter "
            u"Großschreibung."},
    {u"it",
     u"Discorso con punteggiatura completa: virgole, punti, punti interrogativi e maiuscole corrette."},
    {u"pt",
     u"Discurso com pontuação completa: vírgulas, pontos, pontos de interrogação e maiúsculas corretas."},
}};

} // namespace

QString outputBase(const QString& wav) {
    const auto nameBegins = wav.lastIndexOf(u'/') + 1;
    const auto dot = wav.lastIndexOf(u'.');
    const bool hasExtension = dot > nameBegins && dot + 1 < wav.size();
    return hasExtension ? wav.left(dot) : wav;
}

double wavDurationSeconds(qint64 bytes) {
    return static_cast<double>(std::max<qint64>(bytes - wavHeaderBytes, 0)) / wavBytesPerSecond;
}

bool isShortClip(std::optional<double> seconds) {
    return seconds && *seconds < shortClipSeconds;
}

std::optional<QString> defaultPrompt(WhisperMode mode, const QString& language) {
    if (mode == WhisperMode::TranslateToEnglish)
        return QString::fromUtf16(englishTranslationPrompt);
    for (const auto& [code, prompt] : transcriptionPrompts) {
        if (language == code)
            return QString::fromUtf16(prompt);
    }
    return std::nullopt;
}

QStringList whisperArguments(const QString& wav, const QString& model, std::optional<double> duration,
                             WhisperMode mode, const QString& language,
                             const std::optional<QString>& prompt) {
    const bool isShort = isShortClip(duration);
    const auto candidates = isShort ? QStringLiteral("1") : QStringLiteral("5");

    QStringList arguments = {
        QStringLiteral("-m"),    model,
        QStringLiteral("-f"),    wav,
        QStringLiteral("-l"),    language.isEmpty() ? QStringLiteral("auto") : language,
        QStringLiteral("-nt"),   // no timestamps
        QStringLiteral("-otxt"), // write a plain text file
        QStringLiteral("-of"),   outputBase(wav),
        QStringLiteral("-t"),    QStringLiteral("10"),
        QStringLiteral("-bs"),   candidates,
        QStringLiteral("-bo"),   candidates,
        QStringLiteral("-sns"), // suppress non-speech tokens
    };
    if (isShort)
        arguments << QStringLiteral("-nf"); // no second try at another temperature
    if (mode == WhisperMode::TranslateToEnglish)
        arguments << QStringLiteral("--translate");
    const auto chosenPrompt = prompt ? prompt : defaultPrompt(mode, language);
    if (chosenPrompt && !chosenPrompt->isEmpty())
        arguments << QStringLiteral("--prompt") << *chosenPrompt;
    return arguments;
}

} // namespace talvera
