// SPDX-License-Identifier: MIT
#include "linux/applications/DesktopEntryIndex.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>

namespace talvera {

namespace {

constexpr qint64 longestEntry = 512 * 1024; ///< bytes; real ones have at most some tens of thousands
constexpr qsizetype mostEntries = 10'000;

/// Ids are compared as window classes come: in any case, with blanks where ids have dashes.
QString folded(const QString& id) {
    return id.toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
}

QByteArray readRegularFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longestEntry) : QByteArray();
}

/// The ids of the entries below `directory`, in alphabetical order, each with its path.
QMap<QString, QString> entryFiles(const QString& directory) {
    QMap<QString, QString> files;
    const QDir root(directory);
    QDirIterator entries(directory, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext() && files.size() < mostEntries) {
        const auto path = entries.next();
        auto id = root.relativeFilePath(path);
        id.chop(qsizetype(sizeof ".desktop") - 1);
        files.insert(id.replace(QLatin1Char('/'), QLatin1Char('-')), path);
    }
    return files;
}

} // namespace

DesktopEntryIndex::DesktopEntryIndex(std::vector<DesktopEntry> entries)
    : m_entries(std::move(entries)) {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const auto id = folded(m_entries[i].id);
        if (!m_byId.contains(id))
            m_byId.insert(id, i);
        const auto windowClass = m_entries[i].startupWMClass.toLower();
        if (!windowClass.isEmpty() && !m_byWindowClass.contains(windowClass))
            m_byWindowClass.insert(windowClass, i);
    }
}

DesktopEntryIndex DesktopEntryIndex::read(const QStringList& directories, const QStringList& languages) {
    std::vector<DesktopEntry> entries;
    QSet<QString> seen;
    for (const auto& directory : directories) {
        const auto files = entryFiles(directory);
        for (auto file = files.begin(); file != files.end(); ++file) {
            if (seen.contains(file.key()))
                continue;
            seen.insert(file.key()); // also one marked as removed: it hides those of later directories
            if (auto entry = parseDesktopEntry(file.key(), readRegularFile(file.value()), languages))
                entries.push_back(std::move(*entry));
        }
    }
    return DesktopEntryIndex(std::move(entries));
}

const DesktopEntry* DesktopEntryIndex::find(const WindowIdentity& window) const {
    if (const auto* entry = byId(window.applicationId))
        return entry;
    // The instance comes first: web applications of a browser share its class but not their instance.
    for (const auto& name : {window.instance, window.windowClass}) {
        if (const auto* entry = byWindowClass(name))
            return entry;
    }
    for (const auto& name : {window.instance, window.windowClass}) {
        if (const auto* entry = byId(name))
            return entry;
    }
    return nullptr;
}

const DesktopEntry* DesktopEntryIndex::byId(const QString& id) const {
    const auto found = m_byId.find(folded(id));
    return found == m_byId.end() ? nullptr : &m_entries[*found];
}

const DesktopEntry* DesktopEntryIndex::byWindowClass(const QString& windowClass) const {
    const auto found = m_byWindowClass.find(windowClass.toLower());
    return found == m_byWindowClass.end() ? nullptr : &m_entries[*found];
}

} // namespace talvera
