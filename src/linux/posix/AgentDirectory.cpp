// SPDX-License-Identifier: MIT
#include "linux/posix/AgentDirectory.h"

#include "linux/support/privateDirectory.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvera {

namespace {

/// An open directory, no link to one.
FileDescriptor opened(const QString& path) {
    return FileDescriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Locked by us until the descriptor is closed; false when another process has it. The children that we start
/// close theirs.
bool lock(const FileDescriptor& directory) {
    return directory.isOpen() && ::flock(directory.get(), LOCK_EX | LOCK_NB) == 0;
}

/// A directory that is locked is in use.
void removeLeft(const QString& shared) {
    const QDir directory(shared);
    const auto found =
        directory.entryList({QStringLiteral("agent-*")}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const auto& name : found) {
        const auto left = directory.filePath(name);
        if (const auto locked = opened(left); lock(locked))
            QDir(left).removeRecursively();
    }
}

} // namespace

AgentDirectory::AgentDirectory(const QString& shared)
    : m_shared(shared) {
    removeLeft(shared);
    do { // another start may remove it as left over before it is locked
        auto name = QFile::encodeName(shared + QStringLiteral("/agent-XXXXXX"));
        if (::mkdtemp(name.data()) == nullptr)
            throw PlatformError(QStringLiteral("AgentDirectory"), errno,
                                QStringLiteral("no private directory: %1").arg(qt_error_string(errno)));
        m_path = QFile::decodeName(name);
        m_lock = opened(m_path);
    } while (!lock(m_lock) || !isInPlace());
}

AgentDirectory::~AgentDirectory() {
    // A recogniser that outlives us by a moment may make another file in between.
    for (int attempt = 0; attempt < 3 && isInPlace(); ++attempt)
        QDir(m_path).removeRecursively();
}

void AgentDirectory::keepInPlace() {
    m_changes = FileDescriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!m_changes.isOpen())
        return;
    m_changed = std::make_unique<QSocketNotifier>(m_changes.get(), QSocketNotifier::Read);
    QObject::connect(m_changed.get(), &QSocketNotifier::activated, m_changed.get(), [this] {
        std::array<char, 4096> events;
        while (::read(m_changes.get(), events.data(), events.size()) > 0) {
        }
        restore();
    });
    watch();
    restore(); // it may have gone before we watched
}

bool AgentDirectory::isInPlace() const {
    struct stat named {};
    struct stat locked {};
    return ::lstat(QFile::encodeName(m_path).constData(), &named) == 0 &&
           ::fstat(m_lock.get(), &locked) == 0 && named.st_dev == locked.st_dev &&
           named.st_ino == locked.st_ino;
}

/// What can't be made shows when a recording is to be saved.
void AgentDirectory::restore() {
    if (isInPlace() || !makePrivateDirectory(m_shared) || !makePrivateDirectory(m_path))
        return;
    if (auto made = opened(m_path); lock(made))
        m_lock = std::move(made);
    watch(); // the shared one may be another one now
}

/// Looks at the shared directory, since our own, which we hold open, would tell nothing of its removal.
void AgentDirectory::watch() {
    ::inotify_add_watch(m_changes.get(), QFile::encodeName(m_shared).constData(),
                        IN_DELETE | IN_MOVED_FROM | IN_MOVE_SELF | IN_ONLYDIR);
}

} // namespace talvera
