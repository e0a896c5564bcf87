// SPDX-License-Identifier: MIT
#include "text/Localization.h"

#include <QtGlobal>

namespace talvera {

namespace {

constexpr int uncounted = -1;

/// Catalogs get to know the number, so that each can choose the form by the rules of its own language.
QString textFor(const char* key, const char* defaultText, int number) {
    auto text = qtTrId(key, number); // answers the key itself where no catalog knows it
    return text == QLatin1String(key) ? QString::fromUtf8(defaultText) : text;
}

QString replacedOnce(QString pattern, const QString& placeholder, const QString& value) {
    if (const auto position = pattern.indexOf(placeholder); position >= 0)
        pattern.replace(position, placeholder.size(), value);
    return pattern;
}

} // namespace

QString localized(const char* key, const char* defaultText) {
    return textFor(key, defaultText, uncounted);
}

QString counted(const char* key, const char* defaultText, std::int64_t number) {
    // No language looks at more than the last few digits, and those of a number that is too large stay.
    constexpr std::int64_t manyDigits = 1'000'000;
    const auto size = number < 0 ? -(number % manyDigits) : number;
    const auto shown = size > manyDigits ? manyDigits + size % manyDigits : size;
    return formatted(textFor(key, defaultText, static_cast<int>(shown)), number);
}

QString formatted(const QString& pattern, const QString& value) {
    return replacedOnce(pattern, QStringLiteral("%@"), value);
}

QString formatted(const QString& pattern, std::int64_t number) {
    return replacedOnce(pattern, QStringLiteral("%lld"), QString::number(number));
}

} // namespace talvera
