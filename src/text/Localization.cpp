// SPDX-License-Identifier: MIT
#include "text/Localization.h"

#include <QtGlobal>

namespace talvera {

QString localized(const char* key, const char* defaultText) {
    auto text = qtTrId(key); // answers the key itself where no catalog knows it
    return text == QLatin1String(key) ? QString::fromUtf8(defaultText) : text;
}

namespace {

QString replacedOnce(QString pattern, const QString& placeholder, const QString& value) {
    if (const auto position = pattern.indexOf(placeholder); position >= 0)
        pattern.replace(position, placeholder.size(), value);
    return pattern;
}

} // namespace

QString formatted(const QString& pattern, const QString& value) {
    return replacedOnce(pattern, QStringLiteral("%@"), value);
}

QString formatted(const QString& pattern, std::int64_t number) {
    return replacedOnce(pattern, QStringLiteral("%lld"), QString::number(number));
}

} // namespace talvera
