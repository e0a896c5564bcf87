// SPDX-License-Identifier: MIT
#include "shell/texts/InterfaceLanguage.h"

#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"
#include "shell/texts/TextCatalog.h"
#include "shell/texts/fontPackage.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

const auto english = QStringLiteral("en");

constexpr qint64 largestCatalog = 1024 * 1024;

/// What sessions call languages whose catalogs have another name. Chinese in the other script has none: who
/// reads that is better served by the next language of the list.
QString catalogName(const QString& code) {
    if (code == u"zh" || code == u"zh-CN" || code == u"zh-SG")
        return QStringLiteral("zh-Hans");
    return code == u"pt" ? QStringLiteral("pt-PT") : code;
}

/// The language under its whole name, and under shorter and shorter beginnings of it.
QStringList namesOf(const QString& language) {
    QStringList names;
    for (auto code = QString(language).replace(u'_', u'-'); !code.isEmpty();
         code.truncate(std::max<qsizetype>(code.lastIndexOf(u'-'), 0)))
        names << code;
    if (names.size() > 1 && names.last() == u"zh") // it would be the other script's, too
        names.removeLast();
    return names;
}

} // namespace

InterfaceLanguage::InterfaceLanguage(Parts parts, const QString& chosen, const QStringList& preferred)
    : m_parts(parts)
    , m_preferred(preferred)
    , m_choice(choiceFor(chosen)) {
    load(english);
    if (m_choice.code != english)
        load(m_choice.code);
}

InterfaceLanguage::~InterfaceLanguage() {
    for (const auto& catalog : m_catalogs)
        QCoreApplication::removeTranslator(catalog.get());
}

InterfaceLanguage::Choice InterfaceLanguage::choiceFor(const QString& chosen) const {
    auto choice = best(chosen == u"system" ? m_preferred : QStringList{chosen});
    if (choice.code == english && choice.missingFont)
        choice.code = best(m_preferred).code;
    return choice;
}

QString InterfaceLanguage::pathOf(const QString& code) const {
    return QStringLiteral("%1/Resources/texts/%2.json").arg(m_parts.directories.resources, code);
}

/// The first language that there is a catalog for and that can be read, and what the first one that can't be
/// read would need.
InterfaceLanguage::Choice InterfaceLanguage::best(const QStringList& languages) const {
    Choice choice;
    for (const auto& language : languages) {
        if (language.contains(u'/')) // no way to another directory
            continue;
        for (const auto& name : namesOf(language)) {
            const auto code = catalogName(name);
            if (code != english && !m_parts.files.exists(pathOf(code)))
                continue;
            const auto package = missingFontPackage(code, m_parts.fonts);
            if (!package)
                return {code, choice.missingFont};
            if (!choice.missingFont)
                choice.missingFont = package;
        }
    }
    return choice;
}

void InterfaceLanguage::load(const QString& code) {
    const auto path = pathOf(code);
    try {
        const auto size = m_parts.files.size(path);
        const auto texts =
            size && *size <= largestCatalog ? TextCatalog::parse(m_parts.files.read(path)) : std::nullopt;
        if (!texts) {
            m_parts.console.log(QStringLiteral("[texts] %1 is no catalog of texts").arg(path));
            return;
        }
        auto catalog = std::make_unique<TextCatalog>(*texts, code);
        QCoreApplication::installTranslator(catalog.get());
        m_catalogs.push_back(std::move(catalog));
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("[texts] %1 can't be read: %2").arg(path, error.message()));
    }
}

} // namespace talvera
