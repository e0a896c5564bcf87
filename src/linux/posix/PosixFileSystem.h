// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/FileSystem.h"

namespace talvera {

/// The machine's files. Only regular files are read and written: a device or a pipe under a file's name is an
/// error (EINVAL), never a wait.
class PosixFileSystem final : public FileSystem {
public:
    void write(const QString& path, const QByteArray& bytes) override;
    QByteArray read(const QString& path) override;
    void readBlocks(const QString& path, qint64 blockSize,
                    const std::function<void(QByteArrayView block)>& visit) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void removeAll(const QString& path) override;
    void createDirectories(const QString& path) override;
    bool exists(const QString& path) override;
    bool isDirectory(const QString& path) override;
    bool isExecutableFile(const QString& path) override;
    std::optional<qint64> size(const QString& path) override;
    std::optional<FileStamp> stamp(const QString& path) override;
    void readAhead(const QString& path) override;
    std::optional<qint64> availableBytes(const QString& directory) override;
};

} // namespace talvera
