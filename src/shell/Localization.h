// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The text for a dotted `key` in the language of the loaded catalogs, else `defaultText`. Key by key: a
/// catalog that lacks one shows the default there.
QString localized(const char* key, const char* defaultText);

/// `pattern` with its first "%@" replaced by `value`, which is taken as it stands.
QString formatted(const QString& pattern, const QString& value);

} // namespace talvera
