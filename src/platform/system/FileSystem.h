// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PlatformError.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace talvera {

/// Files by absolute path. Any thread. Failures are thrown as PlatformError (domain "FileSystem", code
/// errno).
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Writes the whole file, mode 0600, replacing what stands there. On failure nothing is left at the path.
    virtual void write(const QString& path, const QByteArray& bytes) = 0;

    virtual QByteArray read(const QString& path) = 0;

    virtual void remove(const QString& path) = 0;

    /// Creates the directory and its parents, mode 0700; one that exists is fine.
    virtual void createDirectories(const QString& path) = 0;

    /// The queries answer false or nothing when they can't look.
    virtual bool exists(const QString& path) = 0;
    virtual bool isDirectory(const QString& path) = 0;
    virtual bool isExecutableFile(const QString& path) = 0;
    virtual std::optional<qint64> size(const QString& path) = 0;
};

/// Removes the file, or leaves it where that fails: for what lies in the private directory, where the user
/// could do nothing about it and the next start takes it away.
inline void removeIfPossible(FileSystem& files, const QString& path) {
    try {
        files.remove(path);
    } catch (const PlatformError&) {
        return;
    }
}

} // namespace talvera
