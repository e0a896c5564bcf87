// SPDX-License-Identifier: MIT
#pragma once

#include "shell/texts/TextCatalog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

// For test programs that know the place of our catalogs as TALVERA_TEXTS.
namespace talvera::test {

inline TextCatalog::Texts shippedTexts(const QString& code) {
    QFile file(QStringLiteral(TALVERA_TEXTS "/%1.json").arg(code));
    auto texts = file.open(QFile::ReadOnly) ? TextCatalog::parse(file.readAll()) : std::nullopt;
    if (!texts)
        throw std::runtime_error("there is no catalog " + code.toStdString());
    return std::move(*texts);
}

/// The codes of all catalogs but the English one, which only words what differs from the defaults.
inline std::vector<std::string> shippedTranslations() {
    std::vector<std::string> codes;
    for (const auto& file : QDir(QStringLiteral(TALVERA_TEXTS)).entryList({QStringLiteral("*.json")})) {
        if (const auto code = file.chopped(5); code != u"en")
            codes.push_back(code.toStdString());
    }
    return codes;
}

/// "pt_BR", for the name of a test.
inline std::string languageOfTest(const testing::TestParamInfo<std::string>& language) {
    auto name = language.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

/// The interface speaks the language `code` as long as this object lives.
class SpokenLanguage {
public:
    explicit SpokenLanguage(const QString& code)
        : m_catalog(shippedTexts(code), code) {
        QCoreApplication::installTranslator(&m_catalog);
    }
    ~SpokenLanguage() { QCoreApplication::removeTranslator(&m_catalog); }
    SpokenLanguage(const SpokenLanguage&) = delete;
    SpokenLanguage& operator=(const SpokenLanguage&) = delete;

private:
    TextCatalog m_catalog;
};

} // namespace talvera::test
