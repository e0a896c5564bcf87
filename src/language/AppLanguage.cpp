// SPDX-License-Identifier: MIT
#include "language/AppLanguage.h"

#include <algorithm>

namespace talvera {

const std::vector<AppLanguage>& AppLanguage::all() {
    static const std::vector<AppLanguage> rows{
        {QStringLiteral("system"), QString()},
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("es"), QStringLiteral("Español")},
        {QStringLiteral("fr"), QStringLiteral("Français")},
        {QStringLiteral("ru"), QStringLiteral("Русский")},
        {QStringLiteral("uk"), QStringLiteral("Українська")},
        {QStringLiteral("ja"), QStringLiteral("日本語")},
        {QStringLiteral("de"), QStringLiteral("Deutsch")},
        {QStringLiteral("pl"), QStringLiteral("Polski")},
        {QStringLiteral("pt-BR"), QStringLiteral("Português (Brasil)")},
        {QStringLiteral("pt-PT"), QStringLiteral("Português (Portugal)")},
        {QStringLiteral("zh-Hans"), QStringLiteral("简体中文")},
    };
    return rows;
}

const AppLanguage& AppLanguage::byCode(const QString& code) {
    const auto row = std::find_if(all().begin(), all().end(), [&](const auto& r) { return r.code == code; });
    return row != all().end() ? *row : all().front();
}

} // namespace talvera
