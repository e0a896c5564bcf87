// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"

#include "language/PartStream.h"
#include "language/SnapshotStream.h"
#include "platform/language/LanguageModel.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace talvera::AICleanup {

namespace {

using Case = AIFailure::Case;

/// The code of the language that `tag` names; empty when it names none, as "und" and "x-private" do.
QString languageCode(const QString& tag) {
    const auto first = tag.section(u'-', 0, 0).toLower();
    const bool isCode = (first.size() == 2 || first.size() == 3) && first != u"und" && first != u"mul" &&
                        std::all_of(first.begin(), first.end(),
                                    [](QChar letter) { return letter >= u'a' && letter <= u'z'; });
    return isCode ? first : QString();
}

/// The line that asks for a register of its own; empty for the register that was spoken.
QString toneLine(CleanupTone tone) {
    switch (tone) {
    case CleanupTone::Off:
    case CleanupTone::Conversational:
        break;
    case CleanupTone::Casual:
        return QStringLiteral(
            "\n    - Keep the register very casual. Contractions allowed. Short sentences are fine.");
    case CleanupTone::Professional:
        return QStringLiteral("\n    - Use a formal register. Full sentences. No contractions. No slang.");
    }
    return {};
}

} // namespace

bool isAvailable(LanguageModel& model) {
    return !model.unavailableReason();
}

QSet<QString> supportedLanguageCodes(LanguageModel& model) {
    QSet<QString> codes;
    for (const auto& tag : model.supportedLanguages()) {
        if (const auto code = languageCode(tag); !code.isEmpty())
            codes.insert(code);
    }
    return codes;
}

bool isSourceSupported(const QString& code, AIAvailabilityState state,
                       const QSet<QString>& supportedLanguageCodes) {
    if (state != AIAvailabilityState::Available)
        return false;
    const auto pieces = code.split(u'-', Qt::SkipEmptyParts);
    return supportedLanguageCodes.contains(pieces.isEmpty() ? code : pieces.front());
}

QString cleanupInstructions(CleanupTone tone) {
    const auto wanted = QStringLiteral(
        "Task: clean up a dictation transcript inside <raw>.\n"
        "\n"
        "Do:\n"
        "- Remove filler words and false starts (um, uh, like, you know, \"типа\", \"короче\", \"э-э\", "
        "\"ну\").\n"
        "- Fix obvious grammar and agreement errors.\n"
        "- Restore missing punctuation: commas, periods, question and exclamation marks.\n"
        "- Capitalize the first letter of each sentence and proper nouns.\n"
        "- Break into paragraphs only on clear topic shifts (conservative — when in doubt, keep one "
        "paragraph).");
    const auto unwanted = QStringLiteral(
        "\n\nDo NOT:\n"
        "- Translate. Output MUST be in the exact same language as the input. Russian input → Russian "
        "output. English input → English output.\n"
        "- Summarize, shorten, or paraphrase. Keep every meaningful word the speaker said.\n"
        "- Change the register beyond what's requested above. Do not \"polish\" slang unless asked.\n"
        "- Rewrite proper nouns, brand names, technical terms, code, URLs, emails, numbers, or file paths.\n"
        "- Add content, explanations, or commentary that wasn't in the input.\n"
        "\n"
        "Output only the cleaned text. No preamble, no quotes, no tags.");
    return wanted + toneLine(tone) + unwanted;
}

QString translationInstructions(const QString& language) {
    return QStringLiteral("Task: translate the transcript inside <raw> into ") + language +
           QStringLiteral(
               ".\n"
               "\n"
               "Do:\n"
               "- Drop filler words and false starts from the source; do not translate them literally.\n"
               "- Preserve meaning, tone, and register. Casual stays casual, formal stays formal.\n"
               "- Use natural, idiomatic ") +
           language +
           QStringLiteral(". Not word-by-word.\n"
                          "- Restore punctuation and capitalization appropriate for ") +
           language +
           QStringLiteral(
               ".\n"
               "\n"
               "Do NOT:\n"
               "- Translate proper nouns, brand names, technical terms, code identifiers, URLs, emails, "
               "file paths, or numbers. Keep them verbatim.\n"
               "- Transliterate names.\n"
               "- Explain, summarize, shorten, or add commentary.\n"
               "- Include the source text or any tags.\n"
               "\n"
               "Output only the translation.");
}

std::unique_ptr<PartStream> stream(MainActor& actor, LanguageModel& model, const QString& instructions,
                                   const QString& input, bool permissive) {
    auto session = model.makeSession(instructions,
                                     permissive ? LanguageModel::Guardrails::PermissiveContentTransformations
                                                : LanguageModel::Guardrails::Default);
    const auto prompt = QStringLiteral("<raw>") + input + QStringLiteral("</raw>");
    return std::make_unique<PartStream>(std::make_unique<SnapshotStream>(actor, std::move(session), prompt));
}

AIFailure classify(const std::exception& error) {
    const auto* ofModel = dynamic_cast<const LanguageModelError*>(&error);
    const auto debugText = ofModel ? ofModel->debugText() : QString::fromUtf8(error.what());
    const auto description = ofModel ? ofModel->localizedDescription() : debugText;
    const auto says = [&debugText](const char* word) { return debugText.contains(QLatin1String(word)); };
    const auto describes = [&description](const char* word) {
        return description.contains(QLatin1String(word), Qt::CaseInsensitive);
    };
    // A text that holds two of the words counts as the first of these.
    if (says("unsupportedLanguageOrLocale"))
        return {Case::UnsupportedLanguage, {}};
    if (says("guardrailViolation") || says("refusal"))
        return {Case::Blocked, {}};
    if (says("exceededContextWindowSize"))
        return {Case::TooLong, {}};
    if (says("rateLimited"))
        return {Case::RateLimited, {}};
    if (says("assetsUnavailable"))
        return {Case::ModelLoading, {}};
    if (describes("apple intelligence") && describes("off"))
        return {Case::Off, {}};
    return {Case::Other, description};
}

} // namespace talvera::AICleanup
