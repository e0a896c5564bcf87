// SPDX-License-Identifier: MIT
#include "linux/network/UnnamedFile.h"

#include "platform/network/FileDownloads.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace talvera {

namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateDirectory = 0700;

[[noreturn]] void fail(int code, const QString& path) {
    const bool isFull = code == ENOSPC || code == EDQUOT;
    throw PlatformError(isFull ? DownloadFailure::DiskFull : DownloadFailure::CannotSave,
                        QStringLiteral("%1: %2").arg(path, qt_error_string(code)));
}

/// Another process may have it already; the file that comes next says whether it is there.
void makeDirectory(const QString& directory) {
    const auto parent = directory.left(directory.lastIndexOf(u'/'));
    if (!parent.isEmpty() && !QDir(parent).exists())
        makeDirectory(parent);
    ::mkdir(QFile::encodeName(directory).constData(), privateDirectory);
}

FileDescriptor openWithoutName(const QString& directory) {
    return FileDescriptor(
        ::open(QFile::encodeName(directory).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, privateFile));
}

FileDescriptor openHidden(const QString& directory, QString& path) {
    auto name = QFile::encodeName(directory + QStringLiteral("/.download-XXXXXX"));
    FileDescriptor file(::mkostemp(name.data(), O_CLOEXEC));
    if (file.isOpen())
        path = QFile::decodeName(name);
    return file;
}

} // namespace

UnnamedFile::UnnamedFile(const QString& directory) {
    if (!QDir(directory).exists())
        makeDirectory(directory);
    m_file = openWithoutName(directory);
    if (!m_file.isOpen() && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL))
        m_file = openHidden(directory, m_hiddenName);
    if (!m_file.isOpen())
        fail(errno, directory);
    ::flock(m_file.get(),
            LOCK_EX | LOCK_NB); // nobody else knows the file; where there are no locks, we do without
}

UnnamedFile::~UnnamedFile() {
    if (!m_hiddenName.isEmpty())
        ::unlink(QFile::encodeName(m_hiddenName).constData());
}

void UnnamedFile::append(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const auto count = ::write(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            fail(errno, QStringLiteral("a download"));
        if (count > 0)
            bytes = bytes.sliced(count);
    }
}

void UnnamedFile::clear() {
    if (::ftruncate(m_file.get(), 0) != 0 || ::lseek(m_file.get(), 0, SEEK_SET) != 0)
        fail(errno, QStringLiteral("a download"));
}

void UnnamedFile::moveTo(const QString& path) {
    const auto name = QFile::encodeName(path);
    if (m_hiddenName.isEmpty()) {
        // The documented way to name such a file without special rights.
        const auto own = QByteArrayLiteral("/proc/self/fd/") + QByteArray::number(m_file.get());
        if (::linkat(AT_FDCWD, own.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0)
            fail(errno, path);
        return;
    }
    if (std::rename(QFile::encodeName(m_hiddenName).constData(), name.constData()) != 0)
        fail(errno, path);
    m_hiddenName.clear();
}

void UnnamedFile::removeUnlocked(const QString& directory) {
    const QDir there(directory);
    for (const auto& entry : there.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks)) {
        const auto path = QFile::encodeName(there.filePath(entry));
        const FileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.constData());
    }
}

} // namespace talvera
