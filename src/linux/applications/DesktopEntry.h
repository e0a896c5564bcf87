// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace talvera {

/// What a desktop file tells of the application that it starts.
struct DesktopEntry {
    QString id;             ///< the file's path below `applications`, joined by dashes, without the ending
    QString name;           ///< in the session's language
    QString startupWMClass; ///< of its windows; may be empty

    bool operator==(const DesktopEntry&) const = default;
};

/// Reads a desktop file. Nothing when it describes no application or is marked as removed; a broken file
/// gives what can be read of it. `languages` are the session's, best first, in the form "de_AT" or "de".
std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content,
                                              const QStringList& languages);

} // namespace talvera
