// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PlatformError.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>

namespace talvera {

/// Tells a file from any other that has had its name, and from itself before it was changed.
struct FileStamp {
    quint64 disk = 0;
    quint64 file = 0; ///< on that disk
    qint64 bytes = 0;
    qint64 changed = 0; ///< nanoseconds

    bool operator==(const FileStamp&) const = default;

    /// Whether both are of one file or directory, changed in between or not. That is certain as long as
    /// something holds it open: a number is given again once its file is gone for good.
    bool isSameFile(const FileStamp& other) const { return disk == other.disk && file == other.file; }
};

/// Files by absolute path. Any thread. Failures are thrown as PlatformError (domain "FileSystem", code
/// errno).
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Writes the whole file, mode 0600, replacing what stands there. On failure nothing is left at the path.
    virtual void write(const QString& path, const QByteArray& bytes) = 0;

    virtual QByteArray read(const QString& path) = 0;

    /// Reads the file in blocks of `blockSize` bytes, the last of which may be shorter, and calls `visit` for
    /// each in order. The bytes are valid for the length of the call.
    virtual void readBlocks(const QString& path, qint64 blockSize,
                            const std::function<void(QByteArrayView block)>& visit) = 0;

    /// Gives a file another name on the same disk, in the place of a file that has it. Once it returns,
    /// contents and name outlast a loss of power, so it may take as long as the disk needs for the whole
    /// file; before, the file has one of the two names.
    virtual void move(const QString& from, const QString& to) = 0;

    virtual void remove(const QString& path) = 0;

    /// Removes a file, or a directory with all that it holds; links in it are not followed. One that doesn't
    /// exist is fine.
    virtual void removeAll(const QString& path) = 0;

    /// Creates the directory and its parents, mode 0700; one that exists is fine.
    virtual void createDirectories(const QString& path) = 0;

    /// The queries answer false or nothing when they can't look.
    virtual bool exists(const QString& path) = 0;
    virtual bool isDirectory(const QString& path) = 0;
    virtual bool isExecutableFile(const QString& path) = 0;
    virtual std::optional<qint64> size(const QString& path) = 0;
    /// Of a file or a directory.
    virtual std::optional<FileStamp> stamp(const QString& path) = 0;

    /// The whole file will be read soon: has it brought into memory, unless it is there. Returns at once, and
    /// does nothing where it can't.
    virtual void readAhead(const QString& path) = 0;

    /// How many bytes can still be written to the disk of this directory.
    virtual std::optional<qint64> availableBytes(const QString& directory) = 0;
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
