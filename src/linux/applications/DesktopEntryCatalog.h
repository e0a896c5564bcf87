// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryIndex.h"

#include <QSet>
#include <QStringList>

#include <chrono>
#include <future>
#include <memory>
#include <optional>

namespace talvera {

/// Keeps the index of installed applications and reads it anew, on another thread, when an application turns
/// up that it lacks and the directories have changed. Main thread only.
class DesktopEntryCatalog {
public:
    /// Starts reading. `directories` hold desktop files, the most important first.
    DesktopEntryCatalog(QStringList directories, QStringList languages);

    /// The `applications` directories of this user, and the session's languages.
    static QStringList sessionDirectories();
    static QStringList sessionLanguages();

    /// The installed application that a window belongs to, if it is known by now. The first call waits for
    /// the index, but no longer than 100 ms; no other call waits.
    std::optional<DesktopEntry> find(const WindowIdentity& window);

private:
    struct Reading {
        QString fingerprint; ///< changes when an application is installed or removed
        std::shared_ptr<const DesktopEntryIndex> index; ///< null when the fingerprint is still the old one
    };

    static Reading read(const QStringList& directories, const QStringList& languages,
                        const QString& knownFingerprint);
    void startReading();
    void takeReading();

    QStringList m_directories;
    QStringList m_languages;
    QString m_fingerprint;
    std::shared_ptr<const DesktopEntryIndex> m_index;
    QSet<QString> m_missed; ///< windows that have cost a look at the directories already
    std::chrono::milliseconds m_firstReadingPatience{100};
    std::future<Reading> m_reading;
};

} // namespace talvera
