// SPDX-License-Identifier: MIT
#include "text/Characters.h"

#include "text/icuText.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <memory>
#include <utility>

namespace talvera {

namespace {

/// A view of the text's own memory, for the length of one call.
icu::UnicodeString aliased(QStringView text) {
    return {false, text.utf16(), static_cast<int32_t>(text.size())};
}

std::unique_ptr<icu::BreakIterator> characterBreaks() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        qFatal("the rules of characters are missing: %s", u_errorName(status));
    return breaks;
}

/// Calls `visit(begin, end)` for each character of `text`.
template <typename Visit>
void forEachCharacter(const QString& text, Visit visit) {
    const auto breaks = characterBreaks();
    const auto view = aliased(text);
    breaks->setText(view);
    auto begin = breaks->first();
    for (auto end = breaks->next(); end != icu::BreakIterator::DONE; end = breaks->next()) {
        visit(begin, end);
        begin = end;
    }
}

/// The first code point; 0 for the empty text.
char32_t firstCodePoint(QStringView text) {
    return text.isEmpty() ? 0 : static_cast<char32_t>(aliased(text).char32At(0));
}

template <typename Predicate>
QString trimmed(const QString& text, Predicate drops) {
    const auto view = aliased(text);
    int32_t begin = 0;
    int32_t end = view.length();
    while (begin < end && drops(view.char32At(begin)))
        begin = view.moveIndex32(begin, 1);
    while (end > begin) {
        const auto last = view.moveIndex32(end, -1);
        if (!drops(view.char32At(last)))
            break;
        end = last;
    }
    return text.mid(begin, end - begin);
}

bool isBlank(UChar32 codePoint) {
    return codePoint == u'\t' || u_charType(codePoint) == U_SPACE_SEPARATOR;
}

} // namespace

std::size_t characterCount(const QString& text) {
    std::size_t count = 0;
    forEachCharacter(text, [&count](int32_t, int32_t) { ++count; });
    return count;
}

std::vector<QStringView> characters(const QString& text) {
    std::vector<QStringView> result;
    result.reserve(static_cast<std::size_t>(text.size()));
    const QStringView view(text);
    forEachCharacter(text,
                     [&](int32_t begin, int32_t end) { result.push_back(view.mid(begin, end - begin)); });
    return result;
}

QString firstCharacters(const QString& text, std::size_t count) {
    const auto all = characters(text);
    return count < all.size() ? text.left(all[count].data() - QStringView(text).data()) : text;
}

QString lastCharacters(const QString& text, std::size_t count) {
    const auto all = characters(text);
    if (count == 0)
        return {};
    return count < all.size() ? text.mid(all[all.size() - count].data() - QStringView(text).data()) : text;
}

QStringList words(const QString& text) {
    QStringList result;
    QString word;
    const auto finishWord = [&] {
        if (!word.isEmpty())
            result.append(std::exchange(word, {}));
    };
    for (const auto character : characters(text)) {
        if (isWhitespace(character))
            finishWord();
        else
            word += character;
    }
    finishWord();
    return result;
}

QStringList lastWords(const QString& text, qsizetype count) {
    const auto breaks = characterBreaks();
    const auto view = aliased(text);
    breaks->setText(view);
    qsizetype begun = 0; // words whose end has been passed on the way back
    bool inWord = false;
    auto begin = breaks->last();
    for (auto end = begin; begin > 0; end = begin) {
        const auto before = breaks->previous();
        const bool isGap = isWhitespace(QStringView(text).mid(before, end - before));
        if (isGap && inWord && begun == count)
            break; // what comes before is no longer wanted
        if (!isGap && !inWord)
            ++begun;
        inWord = !isGap;
        begin = before;
    }
    return words(text.mid(begin));
}

bool isLetter(QStringView character) {
    return u_isUAlphabetic(static_cast<UChar32>(firstCodePoint(character)));
}

bool isWhitespace(QStringView character) {
    return u_isUWhiteSpace(static_cast<UChar32>(firstCodePoint(character)));
}

bool isLineBreak(char32_t codePoint) {
    return (codePoint >= 0x0A && codePoint <= 0x0D) || codePoint == 0x85 || codePoint == 0x2028 ||
           codePoint == 0x2029;
}

QString trimmedBlanks(const QString& text) {
    return trimmed(text, isBlank);
}

QString trimmedWhitespace(const QString& text) {
    return trimmed(text, [](UChar32 codePoint) {
        return isBlank(codePoint) || isLineBreak(static_cast<char32_t>(codePoint));
    });
}

QString trimmedPunctuation(const QString& text) {
    return trimmed(text, [](UChar32 codePoint) { return u_ispunct(codePoint) != 0; });
}

QString foldedForComparison(const QString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto* composer = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status))
        qFatal("the rules of normalisation are missing: %s", u_errorName(status));
    auto lower = icu::UnicodeString(aliased(text));
    lower.toLower(icu::Locale::getRoot());
    const auto composed = composer->normalize(lower, status);
    return U_FAILURE(status) ? toQString(lower) : toQString(composed);
}

} // namespace talvera
