// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace talvera::test {

/// What espeak-ng says for `text`, at 16 kHz. `voice` is one of its names, `wordsPerMinute` its pace. Throws
/// std::runtime_error when it can't speak.
std::vector<std::int16_t> spoken(const QString& text, const QString& voice = QStringLiteral("en-us"),
                                 int wordsPerMinute = 150);

/// The parts one after another, with so much silence in between.
std::vector<std::int16_t> joined(const std::vector<std::vector<std::int16_t>>& parts, double secondsBetween);

} // namespace talvera::test
