// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace talvera {

/// Text as its readers see it: a character is a grapheme cluster, so an accented letter or a flag counts once
/// however many code points it is made of.

/// How many characters `text` has.
std::size_t characterCount(const QString& text);

/// The characters of `text`, in order: views into it, valid as long as it is.
std::vector<QStringView> characters(const QString& text);

/// The first characters of `text`, at most `count` of them.
QString firstCharacters(const QString& text, std::size_t count);

/// The last characters of `text`, at most `count` of them.
QString lastCharacters(const QString& text, std::size_t count);

/// The words of `text`: what stands between white space.
QStringList words(const QString& text);

/// The last words of `text`, at most `count` of them. Costs no more for a longer text.
QStringList lastWords(const QString& text, qsizetype count);

/// The character begins with a letter.
bool isLetter(QStringView character);

/// The character begins with white space, line breaks included.
bool isWhitespace(QStringView character);

/// One that ends a line of a text.
bool isLineBreak(char32_t codePoint);

/// `text` without blanks and tabs at both ends; line breaks stay.
QString trimmedBlanks(const QString& text);

/// `text` without blanks, tabs and line breaks at both ends.
QString trimmedWhitespace(const QString& text);

/// `text` without punctuation at both ends.
QString trimmedPunctuation(const QString& text);

/// `text` in lower case and in the one spelling that all equal texts share, whatever the locale.
QString foldedForComparison(const QString& text);

} // namespace talvera
