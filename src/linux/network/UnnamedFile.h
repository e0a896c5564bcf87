// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QByteArrayView>
#include <QString>

namespace talvera {

/// A file that is written before it gets a name: until then it goes with the descriptor, also when the
/// process is killed. On file systems that know no such files it has a hidden name meanwhile. It is locked as
/// long as it is open, by which other processes know that it is in use. Any thread, one at a time.
class UnnamedFile {
public:
    /// In this directory, which is made if it is missing. Throws PlatformError (DownloadFailure).
    explicit UnnamedFile(const QString& directory);
    ~UnnamedFile();
    UnnamedFile(const UnnamedFile&) = delete;
    UnnamedFile& operator=(const UnnamedFile&) = delete;

    /// Throws PlatformError (DownloadFailure::DiskFull or CannotSave).
    void append(QByteArrayView bytes);

    /// Takes back all that has been appended. Throws PlatformError.
    void clear();

    /// Gives it its name; to be called once. Throws PlatformError (DownloadFailure::CannotSave).
    void moveTo(const QString& path);

    /// Deletes the files of the directory that no process has locked.
    static void removeUnlocked(const QString& directory);

private:
    FileDescriptor m_file;
    QString m_hiddenName; ///< where the file system can't do without
};

} // namespace talvera
