// SPDX-License-Identifier: MIT
#include "text/typewriterChunks.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include <memory>
#include <stdexcept>

namespace talvera {

namespace {

bool startsWithWhiteSpace(const QString& text, int32_t position) {
    UChar32 first = 0;
    U16_GET(reinterpret_cast<const char16_t*>(text.utf16()), 0, position, text.size(), first);
    return u_isUWhiteSpace(first);
}

} // namespace

QStringList typewriterChunks(const QString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        throw std::logic_error("no rules for user-perceived characters");
    // An alias of the text, which outlives the iterator's use.
    const icu::UnicodeString source(false, reinterpret_cast<const char16_t*>(text.utf16()),
                                    static_cast<int32_t>(text.size()));
    characters->setText(source);

    QStringList chunks;
    int32_t start = characters->first();
    int32_t end = characters->next();
    while (end != icu::BreakIterator::DONE) {
        while (end < text.size() && startsWithWhiteSpace(text, end))
            end = characters->next();
        chunks.append(text.mid(start, end - start));
        start = end;
        end = characters->next();
    }
    return chunks;
}

} // namespace talvera
