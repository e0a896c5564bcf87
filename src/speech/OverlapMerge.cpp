// SPDX-License-Identifier: MIT
#include "speech/OverlapMerge.h"

#include "text/Characters.h"

#include <algorithm>
#include <vector>

namespace talvera {

namespace {

constexpr qsizetype mostOverlapWords = 20;
constexpr std::size_t mostPromptCharacters = 600;

QString comparable(const QString& word) {
    return trimmedPunctuation(foldedForComparison(word));
}

/// How many words at the end of `before` stand again at the start of `after`.
qsizetype overlapLength(const QStringList& before, const QStringList& after) {
    const auto most = std::min({before.size(), after.size(), mostOverlapWords});
    QStringList tail;
    QStringList head;
    std::transform(before.end() - most, before.end(), std::back_inserter(tail), comparable);
    std::transform(after.begin(), after.begin() + most, std::back_inserter(head), comparable);
    for (auto length = most; length > 0; --length) {
        if (std::equal(tail.end() - length, tail.end(), head.begin()))
            return length;
    }
    return 0;
}

} // namespace

QString mergeOverlap(const QString& text, const QString& next) {
    const auto aWords = lastWords(text, mostOverlapWords);
    const auto bWords = words(next);
    if (aWords.isEmpty() || bWords.isEmpty()) {
        if (text.isEmpty())
            return next;
        if (next.isEmpty())
            return text;
        return text + u' ' + next;
    }
    const auto overlap = overlapLength(aWords, bWords);
    if (overlap == 0)
        return text + u' ' + next;
    if (overlap == bWords.size())
        return text;
    return text + u' ' + bWords.mid(overlap).join(u' ');
}

QString mergeAll(const QStringList& texts) {
    QString merged = texts.value(0);
    for (qsizetype i = 1; i < texts.size(); ++i)
        merged = mergeOverlap(merged, texts[i]);
    return merged;
}

std::optional<QString> tailPrompt(const QString& text) {
    const auto trimmed = trimmedWhitespace(text);
    if (trimmed.isEmpty())
        return std::nullopt;
    const auto all = characters(trimmed);
    if (all.size() <= mostPromptCharacters)
        return trimmed;

    const auto tailBegin = all.end() - mostPromptCharacters;
    const auto gap = std::find_if(tailBegin, all.end(), isWhitespace);
    const auto promptBegin = gap == all.end() ? tailBegin : gap + 1;
    if (promptBegin == all.end())
        return std::nullopt;
    return trimmed.mid(promptBegin->data() - trimmed.data());
}

} // namespace talvera
