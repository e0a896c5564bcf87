// SPDX-License-Identifier: MIT
#include "linux/language/modelLanguages.h"

#include <QLocale>

#include <array>

namespace talvera {

namespace {

struct Family {
    const char* begin; ///< of the name, in small letters and without what separates its words
    const char* languages;
};

/// What the makers' own model cards say; the longer of two names that begin alike comes first.
constexpr std::array families{
    Family{"llama3.1", "en de fr it pt hi es th"},
    Family{"llama3.2", "en de fr it pt hi es th"},
    Family{"llama3.3", "en de fr it pt hi es th"},
    Family{"metallama3.1", "en de fr it pt hi es th"},
    Family{"granite3", "en de es fr ja pt ar cs it ko nl zh"},
    Family{"phi4mini", "ar zh cs da nl en fi fr de he hu it ja ko no pl pt ru es sv th tr uk"},
    Family{"smollm2", "en"},
};

/// "Meta-Llama-3.1 8B" begins as "metallama3.1" does.
QString plainName(const QString& name) {
    QString plain;
    for (const auto character : name.toLower()) {
        if (character.isLetterOrNumber() || character == u'.')
            plain += character;
    }
    return plain;
}

QStringList allLanguages() {
    QStringList codes;
    for (int language = QLocale::C + 1; language <= QLocale::LastLanguage; ++language) {
        const auto code = QLocale::languageToCode(static_cast<QLocale::Language>(language));
        if (!code.isEmpty())
            codes << code;
    }
    codes.removeDuplicates();
    return codes;
}

} // namespace

QStringList modelLanguages(const ModelFile& model) {
    return model.languages.isEmpty() ? modelLanguages(QStringList{model.name, model.family})
                                     : model.languages;
}

QStringList modelLanguages(const QStringList& names) {
    for (const auto& name : names) {
        const auto plain = plainName(name);
        for (const auto& family : families) {
            if (plain.startsWith(QLatin1String(family.begin)))
                return QString::fromLatin1(family.languages).split(u' ');
        }
    }
    static const auto all = allLanguages();
    return all;
}

} // namespace talvera
