// SPDX-License-Identifier: MIT
#include "linux/posix/PosixFileSystem.h"

#include "linux/posix/readAhead.h"
#include "linux/support/FileDescriptor.h"
#include "platform/system/PlatformError.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace talvera {

namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateDirectory = 0700;

[[noreturn]] void fail(int code, const QString& path) {
    throw PlatformError(QStringLiteral("FileSystem"), code,
                        QStringLiteral("%1: %2").arg(path, qt_error_string(code)));
}

/// The path as the system takes it. One with a NUL inside names nothing; cut there, it would name something
/// else.
QByteArray encoded(const QString& path) {
    if (path.contains(QChar::Null))
        fail(EINVAL, path);
    return QFile::encodeName(path);
}

std::optional<struct stat> statusOf(const QString& path) {
    struct stat status {};
    if (path.contains(QChar::Null) || ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

/// Opens a regular file, without ever waiting for it.
FileDescriptor openRegular(const QString& path, int flags) {
    FileDescriptor file(
        ::open(encoded(path).constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, privateFile));
    if (!file.isOpen())
        fail(errno, path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        fail(errno, path);
    if (!S_ISREG(status.st_mode))
        fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path);
    return file;
}

/// 0, or what went wrong. An empty file is left alone, since truncating it makes some file systems hurry the
/// bytes that follow to the disk: 4 ms for a recording that is about to be deleted.
int emptyFile(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0)
        return errno;
    return status.st_size == 0 || ::ftruncate(file, 0) == 0 ? 0 : errno;
}

/// 0, or what went wrong.
int writeAll(int file, const QByteArray& bytes) {
    qsizetype written = 0;
    while (written < bytes.size()) {
        const auto count =
            ::write(file, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += std::max<ssize_t>(count, 0);
    }
    return 0;
}

/// Fills the block as far as the file goes; answers how far.
qint64 readBlock(int file, QByteArray& block, const QString& path) {
    qint64 filled = 0;
    while (filled < block.size()) {
        const auto count = ::read(file, block.data() + filled, static_cast<size_t>(block.size() - filled));
        if (count < 0 && errno != EINTR)
            fail(errno, path);
        if (count == 0)
            break;
        filled += std::max<ssize_t>(count, 0);
    }
    return filled;
}

void flushToDisk(const QString& path, int flags) {
    const FileDescriptor file(::open(encoded(path).constData(), flags | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen() || ::fsync(file.get()) != 0)
        fail(errno, path);
}

} // namespace

void PosixFileSystem::write(const QString& path, const QByteArray& bytes) {
    // Emptied only once it is known to be a regular file.
    auto file = openRegular(path, O_WRONLY | O_CREAT);
    auto code = emptyFile(file.get());
    if (code == 0 && ::fchmod(file.get(), privateFile) != 0)
        code = errno;
    if (code == 0)
        code = writeAll(file.get(), bytes);
    if (file.reset() != 0 && code == 0)
        code = errno;
    if (code != 0) {
        ::unlink(encoded(path).constData());
        fail(code, path);
    }
}

QByteArray PosixFileSystem::read(const QString& path) {
    const auto file = openRegular(path, O_RDONLY);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        fail(errno, path);

    QByteArray bytes;
    constexpr qsizetype step = 1 << 16;
    auto room = static_cast<qsizetype>(status.st_size) + 1; // one more, to meet the end at once
    while (true) {
        const auto filled = bytes.size();
        bytes.resize(filled + room);
        const auto count = ::read(file.get(), bytes.data() + filled, static_cast<size_t>(room));
        if (count < 0 && errno != EINTR)
            fail(errno, path);
        bytes.resize(filled + std::max<ssize_t>(count, 0));
        if (count == 0)
            return bytes;
        room = step;
    }
}

void PosixFileSystem::readBlocks(const QString& path, qint64 blockSize,
                                 const std::function<void(QByteArrayView block)>& visit) {
    const auto file = openRegular(path, O_RDONLY);
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL); // its answer matters for speed alone
    QByteArray block(blockSize, Qt::Uninitialized);
    while (true) {
        const auto filled = readBlock(file.get(), block, path);
        if (filled > 0)
            visit(QByteArrayView(block.constData(), filled));
        if (filled < block.size())
            return;
    }
}

void PosixFileSystem::move(const QString& from, const QString& to) {
    flushToDisk(from, O_RDONLY);
    if (std::rename(encoded(from).constData(), encoded(to).constData()) != 0)
        fail(errno, to);
    flushToDisk(to.left(to.lastIndexOf(u'/')), O_RDONLY | O_DIRECTORY);
}

void PosixFileSystem::remove(const QString& path) {
    if (std::remove(encoded(path).constData()) != 0)
        fail(errno, path);
}

void PosixFileSystem::removeAll(const QString& path) {
    std::error_code error;
    std::filesystem::remove_all(encoded(path).toStdString(), error);
    if (error)
        fail(error.value(), path);
}

void PosixFileSystem::createDirectories(const QString& path) {
    if (isDirectory(path))
        return;
    const auto parent = path.left(path.lastIndexOf(u'/'));
    if (!parent.isEmpty() && !exists(parent))
        createDirectories(parent);
    if (::mkdir(encoded(path).constData(), privateDirectory) != 0 && !(errno == EEXIST && isDirectory(path)))
        fail(errno, path);
}

bool PosixFileSystem::exists(const QString& path) {
    return statusOf(path).has_value();
}

bool PosixFileSystem::isDirectory(const QString& path) {
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode);
}

bool PosixFileSystem::isExecutableFile(const QString& path) {
    const auto status = statusOf(path);
    return status && S_ISREG(status->st_mode) && ::access(QFile::encodeName(path).constData(), X_OK) == 0;
}

std::optional<qint64> PosixFileSystem::availableBytes(const QString& directory) {
    struct statvfs status {};
    if (directory.contains(QChar::Null) || ::statvfs(QFile::encodeName(directory).constData(), &status) != 0)
        return std::nullopt;
    return static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
}

std::optional<qint64> PosixFileSystem::size(const QString& path) {
    const auto status = statusOf(path);
    return status && S_ISREG(status->st_mode) ? std::optional<qint64>(status->st_size) : std::nullopt;
}

std::optional<FileStamp> PosixFileSystem::stamp(const QString& path) {
    const auto status = statusOf(path);
    if (!status)
        return std::nullopt;
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    return FileStamp{status->st_dev, status->st_ino, status->st_size,
                     status->st_ctim.tv_sec * nanosecondsPerSecond + status->st_ctim.tv_nsec};
}

void PosixFileSystem::readAhead(const QString& path) {
    try {
        talvera::readAhead(openRegular(path, O_RDONLY));
    } catch (const std::exception&) {
        return; // who reads it will say why it can't be read
    }
}

} // namespace talvera
