// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <ostream>

/// Lets failing expectations show texts in words.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
