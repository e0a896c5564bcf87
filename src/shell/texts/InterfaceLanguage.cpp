// SPDX-License-Identifier: MIT
#include "shell/texts/InterfaceLanguage.h"

#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"
#include "shell/texts/TextCatalog.h"

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
    , m_spoken(bestFor(chosen)) {
    load(english);
    if (m_spoken != english)
        load(m_spoken);
}

InterfaceLanguage::~InterfaceLanguage() {
    for (const auto& catalog : m_catalogs)
        QCoreApplication::removeTranslator(catalog.get());
}

QString InterfaceLanguage::bestFor(const QString& chosen) const {
    return best(chosen == u"system" ? m_preferred : QStringList{chosen});
}

QString InterfaceLanguage::pathOf(const QString& code) const {
    return QStringLiteral("%1/Resources/texts/%2.json").arg(m_parts.directories.resources, code);
}

/// The catalog of the first language that there is one for.
QString InterfaceLanguage::best(const QStringList& languages) const {
    for (const auto& language : languages) {
        if (language.contains(u'/')) // no way to another directory
            continue;
        for (const auto& name : namesOf(language)) {
            const auto code = catalogName(name);
            if (code == english || m_parts.files.exists(pathOf(code)))
                return code;
        }
    }
    return english;
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
