// SPDX-License-Identifier: MIT
#include "linux/cld2/Cld2LanguageRecognizer.h"

#include <cstdio> // the library's header needs it

#include <cld2/public/compact_lang_det.h>
#include <cld2/public/encodings.h>

namespace talvera {

namespace {

/// The library's code in today's spelling, without script or region.
QString twoLetterCode(CLD2::Language language) {
    const auto code = QString::fromLatin1(CLD2::LanguageCode(language)).section(u'-', 0, 0);
    if (code == u"iw")
        return QStringLiteral("he");
    if (code == u"jw")
        return QStringLiteral("jv");
    return code;
}

} // namespace

std::optional<QString> Cld2LanguageRecognizer::dominantLanguage(const QString& text) {
    constexpr qsizetype plenty = 1'000'000; // more text tells no more
    const auto utf8 = text.left(plenty).toUtf8();
    const CLD2::CLDHints noHints{nullptr, nullptr, CLD2::UNKNOWN_ENCODING, CLD2::UNKNOWN_LANGUAGE};
    CLD2::Language topThree[3];
    int percentages[3];
    double scores[3];
    int textBytes = 0;
    int validBytes = 0;
    bool isReliable = false;
    const auto language = CLD2::ExtDetectLanguageSummaryCheckUTF8(
        utf8.constData(), static_cast<int>(utf8.size()), /* is_plain_text */ true, &noHints, /* flags */ 0,
        topThree, percentages, scores, /* resultchunkvector */ nullptr, &textBytes, &isReliable, &validBytes);
    if (!isReliable || language == CLD2::UNKNOWN_LANGUAGE)
        return std::nullopt;
    return twoLetterCode(language);
}

} // namespace talvera
