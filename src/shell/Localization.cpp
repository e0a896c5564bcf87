// SPDX-License-Identifier: MIT
#include "shell/Localization.h"

#include <QtGlobal>

namespace talvera {

QString localized(const char* key, const char* defaultText) {
    auto text = qtTrId(key); // answers the key itself where no catalog knows it
    return text == QLatin1String(key) ? QString::fromUtf8(defaultText) : text;
}

QString formatted(const QString& pattern, const QString& value) {
    static const QString placeholder = QStringLiteral("%@");
    auto result = pattern;
    if (const auto position = result.indexOf(placeholder); position >= 0)
        result.replace(position, placeholder.size(), value);
    return result;
}

} // namespace talvera
