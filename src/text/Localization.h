// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace talvera {

/// The text for a dotted `key` in the language of the loaded catalogs, else `defaultText`. Key by key: a
/// catalog that lacks one shows the default there.
QString localized(const char* key, const char* defaultText);

/// `pattern` with its first "%@" replaced by `value`, which is taken as it stands.
QString formatted(const QString& pattern, const QString& value);

/// `pattern` with its first "%lld" replaced by `number`.
QString formatted(const QString& pattern, std::int64_t number);

} // namespace talvera
