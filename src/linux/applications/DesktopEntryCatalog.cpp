// SPDX-License-Identifier: MIT
#include "linux/applications/DesktopEntryCatalog.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

namespace talvera {

namespace {

constexpr qsizetype mostMisses = 1000;

QString fingerprintOf(const QStringList& directories) {
    QString fingerprint;
    for (const auto& directory : directories) {
        const QFileInfo info(directory);
        fingerprint +=
            QString::number(info.exists() ? info.lastModified().toMSecsSinceEpoch() : 0) + QLatin1Char(' ');
    }
    return fingerprint;
}

} // namespace

DesktopEntryCatalog::DesktopEntryCatalog(QStringList directories, QStringList languages)
    : m_directories(std::move(directories))
    , m_languages(std::move(languages)) {
    startReading();
}

QStringList DesktopEntryCatalog::sessionDirectories() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

QStringList DesktopEntryCatalog::sessionLanguages() {
    QStringList languages;
    for (const auto& language : QLocale::system().uiLanguages()) {
        const auto name = QLocale(language).name(); // "de_AT"
        languages << name << name.section(QLatin1Char('_'), 0, 0);
    }
    languages.removeDuplicates();
    return languages;
}

std::optional<DesktopEntry> DesktopEntryCatalog::find(const WindowIdentity& window) {
    takeReading();
    const auto* entry = m_index ? m_index->find(window) : nullptr;
    if (entry)
        return *entry;
    const auto key =
        window.applicationId + QLatin1Char('\n') + window.instance + QLatin1Char('\n') + window.windowClass;
    // A reading that is under way may have passed the new entry by: this window then asks for another.
    if (!m_reading.valid() && !m_missed.contains(key) && m_missed.size() < mostMisses) {
        m_missed.insert(key);
        startReading();
    }
    return std::nullopt;
}

void DesktopEntryCatalog::startReading() {
    m_reading =
        std::async(std::launch::async, &DesktopEntryCatalog::read, m_directories, m_languages, m_fingerprint);
}

void DesktopEntryCatalog::takeReading() {
    if (!m_reading.valid())
        return;
    const auto patience = std::exchange(m_firstReadingPatience, std::chrono::milliseconds(0));
    if (m_reading.wait_for(patience) != std::future_status::ready)
        return;
    const auto reading = m_reading.get();
    if (!reading.index)
        return;
    m_index = reading.index;
    m_fingerprint = reading.fingerprint;
    m_missed.clear();
}

DesktopEntryCatalog::Reading DesktopEntryCatalog::read(const QStringList& directories,
                                                       const QStringList& languages,
                                                       const QString& knownFingerprint) {
    Reading reading{fingerprintOf(directories), nullptr};
    if (reading.fingerprint != knownFingerprint)
        reading.index =
            std::make_shared<const DesktopEntryIndex>(DesktopEntryIndex::read(directories, languages));
    return reading;
}

} // namespace talvera
