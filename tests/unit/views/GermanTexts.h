// SPDX-License-Identifier: MIT
#pragma once

#include "shell/texts/TextCatalog.h"

#include <QCoreApplication>
#include <QFile>

#include <stdexcept>

namespace talvera::test {

/// The interface speaks German as long as this object lives: its words are longer than most languages'.
class GermanTexts {
public:
    GermanTexts() { QCoreApplication::installTranslator(&m_catalog); }
    ~GermanTexts() { QCoreApplication::removeTranslator(&m_catalog); }
    GermanTexts(const GermanTexts&) = delete;
    GermanTexts& operator=(const GermanTexts&) = delete;

private:
    static TextCatalog::Texts read() {
        QFile file(QStringLiteral(TALVERA_TEXTS "/de.json"));
        if (!file.open(QFile::ReadOnly))
            throw std::runtime_error("there is no German catalog");
        return TextCatalog::parse(file.readAll()).value();
    }

    TextCatalog m_catalog{read(), QStringLiteral("de")};
};

} // namespace talvera::test
