// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace talvera {

class InstalledFonts;

/// The package whose font the language of the interface needs and this computer lacks; nothing where its
/// letters can be shown. `code` is a row's of AppLanguage.
std::optional<QString> missingFontPackage(const QString& code, InstalledFonts& fonts);

} // namespace talvera
