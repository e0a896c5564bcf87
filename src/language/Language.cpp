// SPDX-License-Identifier: MIT
#include "language/Language.h"

#include <algorithm>

namespace talvera {

const std::vector<Language>& Language::all() {
    static const std::vector<Language> rows{
        {QStringLiteral("auto"), QStringLiteral("Auto detect")},
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("ru"), QStringLiteral("Russian")},
        {QStringLiteral("uk"), QStringLiteral("Ukrainian")},
        {QStringLiteral("es"), QStringLiteral("Spanish")},
        {QStringLiteral("de"), QStringLiteral("German")},
        {QStringLiteral("fr"), QStringLiteral("French")},
        {QStringLiteral("it"), QStringLiteral("Italian")},
        {QStringLiteral("pt"), QStringLiteral("Portuguese")},
        {QStringLiteral("pl"), QStringLiteral("Polish")},
        {QStringLiteral("nl"), QStringLiteral("Dutch")},
        {QStringLiteral("tr"), QStringLiteral("Turkish")},
        {QStringLiteral("cs"), QStringLiteral("Czech")},
        {QStringLiteral("zh"), QStringLiteral("Chinese")},
        {QStringLiteral("ja"), QStringLiteral("Japanese")},
        {QStringLiteral("ko"), QStringLiteral("Korean")},
        {QStringLiteral("ar"), QStringLiteral("Arabic")},
        {QStringLiteral("hi"), QStringLiteral("Hindi")},
        {QStringLiteral("he"), QStringLiteral("Hebrew")},
    };
    return rows;
}

const Language& Language::byCode(const QString& code) {
    const auto row = std::find_if(all().begin(), all().end(), [&](const auto& r) { return r.code == code; });
    return row != all().end() ? *row : all().front();
}

} // namespace talvera
