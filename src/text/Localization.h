// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace talvera {

/// The text for a dotted `key` in the language of the loaded catalogs, else `defaultText`. Key by key: a
/// catalog that lacks one shows the default there.
QString localized(const char* key, const char* defaultText);

/// The same for a text that counts: in the form that its catalog's language has for `number`, with the first
/// "%lld" replaced by it. The forms are the catalog's "KEY.one", "KEY.few" and so on, and the key itself for
/// all other numbers. `defaultText` is that last form.
QString counted(const char* key, const char* defaultText, std::int64_t number);

/// `pattern` with its first "%@" replaced by `value`, which is taken as it stands.
QString formatted(const QString& pattern, const QString& value);

/// `pattern` with its first "%lld" replaced by `number`.
QString formatted(const QString& pattern, std::int64_t number);

} // namespace talvera
