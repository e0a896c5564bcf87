// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace talvera {

/// `text` followed by `next`, without the words at the start of `next` that repeat the end of `text`. Case
/// and punctuation don't matter for the comparison, at most 20 words are compared, and the longest match
/// wins.
QString mergeOverlap(const QString& text, const QString& next);

/// The texts of neighbouring chunks as one.
QString mergeAll(const QStringList& texts);

/// The end of a chunk's text that shows the decoder of the next chunk where it goes on: at most 600
/// characters, from the start of a word. Nothing for a blank text.
std::optional<QString> tailPrompt(const QString& text);

} // namespace talvera
