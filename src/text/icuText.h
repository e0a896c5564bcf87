// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <unicode/unistr.h>

namespace talvera {

/// The text as it stands. Qt's own conversion from UTF-16 would take a byte-order mark at its start for one,
/// and swap or drop what the user may have said.
inline QString toQString(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

} // namespace talvera
