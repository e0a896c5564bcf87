// SPDX-License-Identifier: MIT
#include "linux/support/replaceFile.h"

#include "linux/support/FileDescriptor.h"
#include "platform/system/PlatformError.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvera {

namespace {

[[noreturn]] void fail(int code, const QByteArray& path) {
    throw PlatformError(QStringLiteral("FileSystem"), code,
                        QStringLiteral("%1: %2").arg(QFile::decodeName(path), qt_error_string(code)));
}

/// Where a new file has to go so that links on the way to it stay links.
QByteArray resolved(const QByteArray& path) {
    char real[PATH_MAX];
    return ::realpath(path.constData(), real) != nullptr ? QByteArray(real) : path;
}

void writeDurably(const QByteArray& path, const QByteArray& bytes) {
    FileDescriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isOpen())
        fail(errno, path);
    for (qsizetype written = 0; written < bytes.size();) {
        const auto count =
            ::write(file.get(), bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            fail(errno, path);
        written += std::max<ssize_t>(count, 0);
    }
    if (::fsync(file.get()) != 0 || file.reset() != 0)
        fail(errno, path);
}

/// Makes a change of names in `directory` durable, where the file system can.
void syncDirectory(const QByteArray& directory) {
    const FileDescriptor opened(::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        ::fsync(opened.get());
}

QByteArray directoryOf(const QByteArray& path) {
    const auto slash = path.lastIndexOf('/');
    return slash > 0 ? path.left(slash) : QByteArrayLiteral("/");
}

/// 0, or what went wrong; EEXIST when `to` is taken.
int renameToFreeName(const QByteArray& from, const QByteArray& to) {
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Some network file systems can't promise it.
    struct stat status {};
    if (::lstat(to.constData(), &status) == 0)
        return EEXIST;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

} // namespace

void replaceFile(const QString& path, const QByteArray& bytes) {
    const auto target = resolved(QFile::encodeName(path));
    const auto fresh = target + ".new";
    ::unlink(fresh.constData()); // what a crash may have left
    try {
        writeDurably(fresh, bytes);
        if (::rename(fresh.constData(), target.constData()) != 0)
            fail(errno, target);
    } catch (const PlatformError&) {
        ::unlink(fresh.constData());
        throw;
    }
    syncDirectory(directoryOf(target));
}

QString setAside(const QString& path) {
    const auto from = QFile::encodeName(path);
    for (int number = 1; number < 10'000; ++number) {
        const auto to = from + ".broken-" + QByteArray::number(number);
        const int code = renameToFreeName(from, to);
        if (code == 0) {
            syncDirectory(directoryOf(from));
            return QFile::decodeName(to);
        }
        if (code != EEXIST)
            fail(code, from);
    }
    fail(EEXIST, from);
}

} // namespace talvera
