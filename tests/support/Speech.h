// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace talvera::test {

/// What espeak-ng says for `text`, at 16 kHz. `voice` is one of its names, `wordsPerMinute` its pace. Throws
/// std::runtime_error when it can't speak.
std::vector<std::int16_t> spoken(const QString& text, const QString& voice = QStringLiteral("en-us"),
                                 int wordsPerMinute = 150);

/// Sentences that the micro model knows. Spoken one after another, with 0.7 s in between, they take about
/// 40 s.
QStringList sentencesOfFortySeconds();
std::vector<std::int16_t> fortySecondsOfSpeech();

/// How many of `sentences` stand in `text` exactly once.
qsizetype countedOnce(const QStringList& sentences, const QString& text);

/// The parts one after another, with so much silence in between.
std::vector<std::int16_t> joined(const std::vector<std::vector<std::int16_t>>& parts, double secondsBetween);

} // namespace talvera::test
