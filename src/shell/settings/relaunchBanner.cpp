// SPDX-License-Identifier: MIT
#include "shell/settings/relaunchBanner.h"

#include <unicode/uloc.h>

#include <array>

namespace talvera {

namespace {

const auto english = QStringLiteral("en");

/// The language without its region or script; nothing where the name begins with no language.
std::optional<QString> languageCode(const QString& identifier) {
    std::array<char, ULOC_LANG_CAPACITY> code{};
    auto status = U_ZERO_ERROR;
    uloc_getLanguage(identifier.toLatin1().constData(), code.data(), static_cast<int32_t>(code.size()),
                     &status);
    if (U_FAILURE(status) || code.front() == '\0')
        return std::nullopt;
    return QString::fromLatin1(code.data());
}

} // namespace

bool relaunchBanner(const std::optional<QString>& current, const QString& selected,
                    const std::optional<QString>& preferred) {
    const auto baseOf = [](const QString& identifier) {
        return languageCode(identifier).value_or(identifier);
    };
    const auto spoken = current.value_or(english);
    if (selected == u"system")
        return languageCode(preferred.value_or(QString())).value_or(english) != baseOf(spoken);
    if (baseOf(selected) != baseOf(spoken))
        return true;
    return !selected.startsWith(spoken) && !spoken.startsWith(selected);
}

} // namespace talvera
