// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/FileSystem.h"

#include <QStringList>

#include <map>
#include <mutex>
#include <optional>

namespace talvera::test {

/// Files in memory. Behaves like the machine's file system, down to errno, and fails on demand. Any thread.
class FakeFileSystem final : public FileSystem {
public:
    /// Holds the directories that are given, and their parents.
    explicit FakeFileSystem(const QStringList& directories = {QStringLiteral("/tmp")});

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

    /// Puts an executable file there.
    void addExecutable(const QString& path);

    /// Holds what the other holds, and nothing else.
    void become(const FakeFileSystem& other);

    /// A disk of this many bytes: what would not fit fails with ENOSPC. Nothing is an endless disk, which
    /// doesn't tell how much room it has.
    void setCapacity(std::optional<qint64> bytes);

    /// Lets the next `writes` writes pass, then one fail with this errno.
    void failWriteAfter(int writes, int code);

    /// From now on, every access of that kind to `path` fails with this errno; 0 lifts it.
    void failReads(const QString& path, int code);
    void failRemovals(const QString& path, int code);
    void failMovesTo(const QString& path, int code);

    /// The paths of all files, in order.
    QStringList files() const;

    /// How many files there are whose name begins and ends like this.
    int count(const QString& prefix, const QString& suffix = {}) const;

    /// The files that were asked for ahead of their reading.
    QStringList readAheads() const;

    /// How many writes have succeeded.
    int writes() const;

private:
    struct File {
        QByteArray bytes;
        bool executable = false;
        quint64 written = 0; ///< when, counted in writes
    };

    mutable std::mutex m_mutex;
    std::map<QString, File> m_files;
    std::map<QString, quint64> m_directories; // and when each was made, counted in directories
    quint64 m_made = 0;
    qint64 m_used = 0;
    int m_writes = 0;
    QStringList m_readAheads;
    std::optional<qint64> m_capacity;
    std::optional<std::pair<int, int>> m_failingWrite; // writes that pass before it, errno
    std::map<QString, int> m_failingReads;
    std::map<QString, int> m_failingRemovals;
    std::map<QString, int> m_failingMoves;
};

} // namespace talvera::test
