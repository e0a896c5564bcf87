// SPDX-License-Identifier: MIT
#include "linux/xdg/sessionLanguages.h"

#include <QRegularExpression>

namespace talvera {

namespace {

bool isPlainC(const QString& locale) {
    return locale.isEmpty() || locale == u"C" || locale == u"POSIX";
}

QString messageLocale(const QProcessEnvironment& environment) {
    for (const auto* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (auto locale = environment.value(QLatin1String(name)); !locale.isEmpty())
            return locale;
    }
    return {};
}

/// "de_AT.UTF-8@euro" is "de-AT".
QString languageOf(const QString& locale) {
    static const QRegularExpression encodingOrVariant(QStringLiteral("[.@].*"));
    return QString(locale).remove(encodingOrVariant).replace(u'_', u'-');
}

} // namespace

QStringList sessionLanguages(const QProcessEnvironment& environment) {
    const auto locale = messageLocale(environment);
    if (isPlainC(locale))
        return {};
    auto locales = environment.value(QStringLiteral("LANGUAGE")).split(u':');
    locales << locale;
    QStringList languages;
    for (const auto& each : locales) {
        if (const auto language = languageOf(each); !isPlainC(language))
            languages << language;
    }
    languages.removeDuplicates();
    return languages;
}

} // namespace talvera
