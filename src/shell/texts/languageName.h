// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// What the user's language calls the language of this `code`, a row of one of our tables; without a catalog
/// it is the table's `displayName`. Its key is "language.CODE".
QString languageName(const QString& code, const QString& displayName);

} // namespace talvera
