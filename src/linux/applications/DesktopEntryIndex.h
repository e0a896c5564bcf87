// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntry.h"

#include <QHash>
#include <QStringList>

#include <vector>

namespace talvera {

/// What a window tells of the application that it belongs to; each may be empty.
struct WindowIdentity {
    QString applicationId; ///< said outright
    QString windowClass;
    QString instance;
};

/// The applications that are installed for this user, to be found by their windows. Not changed once made, so
/// that any thread may read it.
class DesktopEntryIndex {
public:
    /// Of two entries with the same id or the same window class the first counts.
    explicit DesktopEntryIndex(std::vector<DesktopEntry> entries);

    /// Reads the desktop files below `directories`, of which the first ones count most. Takes some tens of
    /// milliseconds on a well-filled machine.
    static DesktopEntryIndex read(const QStringList& directories, const QStringList& languages);

    /// The entry of a window's application; null when none is installed.
    const DesktopEntry* find(const WindowIdentity& window) const;

private:
    const DesktopEntry* byId(const QString& id) const;
    const DesktopEntry* byWindowClass(const QString& windowClass) const;

    std::vector<DesktopEntry> m_entries;
    QHash<QString, std::size_t> m_byId; ///< by lower-case id
    QHash<QString, std::size_t> m_byWindowClass;
};

} // namespace talvera
