// SPDX-License-Identifier: MIT
#include "shell/texts/languageName.h"

#include "text/Localization.h"

namespace talvera {

QString languageName(const QString& code, const QString& displayName) {
    const auto key = QByteArrayLiteral("language.") + code.toUtf8();
    return localized(key.constData(), displayName.toUtf8().constData());
}

} // namespace talvera
