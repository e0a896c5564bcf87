// SPDX-License-Identifier: MIT
#include "shell/texts/fontPackage.h"

#include "platform/language/InstalledFonts.h"

#include <algorithm>
#include <vector>

namespace talvera {

namespace {

struct Script {
    QString language;
    QString letters; ///< some that fonts of neighbouring languages lack
    QString package; ///< named as Debian does
};

/// The languages that aren't written in Latin letters, which every font has.
const std::vector<Script>& scripts() {
    static const std::vector<Script> rows{
        {QStringLiteral("ja"), QStringLiteral("設定あア込"), QStringLiteral("fonts-noto-cjk")},
        {QStringLiteral("ru"), QStringLiteral("ДжыЭё"), QStringLiteral("fonts-inter")},
        {QStringLiteral("uk"), QStringLiteral("ДжїЄґ"), QStringLiteral("fonts-inter")},
        {QStringLiteral("zh-Hans"), QStringLiteral("设置语应"), QStringLiteral("fonts-noto-cjk")},
    };
    return rows;
}

} // namespace

std::optional<QString> missingFontPackage(const QString& code, InstalledFonts& fonts) {
    const auto script = std::find_if(scripts().begin(), scripts().end(),
                                     [&](const Script& each) { return each.language == code; });
    if (script == scripts().end() || fonts.canShow(script->letters))
        return std::nullopt;
    return script->package;
}

} // namespace talvera
