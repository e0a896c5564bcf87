// SPDX-License-Identifier: MIT
#include "linux/xdg/XdgDirectories.h"

#include "linux/support/privateDirectory.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <optional>

#include <pwd.h>
#include <unistd.h>

namespace talvera {

namespace {

/// Relative paths in these variables are to be ignored.
QString absoluteOr(const QString& path, const QString& otherwise) {
    return path.startsWith(u'/') ? QDir::cleanPath(path) : otherwise;
}

/// In the user's own runtime directory, which lies in memory: what was said never reaches a disk.
std::optional<QString> temporaryAtRuntime(const QString& runtime) {
    const auto parent = absoluteOr(runtime, {});
    if (parent.isEmpty() || !isOwnDirectory(parent, 0022))
        return std::nullopt;
    const QString path = parent + QStringLiteral("/talvera");
    return makePrivateDirectory(path) ? std::optional(path) : std::nullopt;
}

/// Under the system's temporary directory, where all users may write. Should another user hold the name that
/// we would have every time, it becomes a fresh one.
QString temporaryOfSystem(const QString& systemTemporary) {
    const QString path = QStringLiteral("%1/talvera-%2")
                             .arg(absoluteOr(systemTemporary, QStringLiteral("/tmp")))
                             .arg(::geteuid());
    if (makePrivateDirectory(path))
        return path;
    auto fresh = QFile::encodeName(path + QStringLiteral("-XXXXXX"));
    if (::mkdtemp(fresh.data()) == nullptr)
        throw PlatformError(QStringLiteral("XdgDirectories"), errno,
                            QStringLiteral("no private temporary directory: %1").arg(qt_error_string(errno)));
    return QFile::decodeName(fresh);
}

/// Beside the program where it was built, in the libraries' place where it was installed.
QString resourcesOf(const QString& program) {
    const auto directory = QFileInfo(program).absolutePath();
    if (QFileInfo(directory + QStringLiteral("/Resources")).isDir())
        return directory;
    return QDir::cleanPath(directory + QStringLiteral("/../lib/talvera"));
}

QString homeOfUser() {
    const auto* user = ::getpwuid(::geteuid());
    return user == nullptr ? QString() : QFile::decodeName(user->pw_dir);
}

} // namespace

QString XdgDirectories::home() {
    return absoluteOr(QFile::decodeName(qgetenv("HOME")), homeOfUser());
}

XdgDirectories::Environment XdgDirectories::environment() {
    const auto variable = [](const char* name) { return QFile::decodeName(qgetenv(name)); };
    return {variable("HOME"),
            variable("XDG_DATA_HOME"),
            variable("XDG_CONFIG_HOME"),
            variable("XDG_RUNTIME_DIR"),
            variable("TMPDIR"),
            QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget()};
}

Directories XdgDirectories::directories(const Environment& environment) {
    const auto home = absoluteOr(environment.home, homeOfUser());
    Directories result;
    result.applicationSupport = absoluteOr(environment.dataHome, home + QStringLiteral("/.local/share"));
    result.configuration =
        absoluteOr(environment.configHome, home + QStringLiteral("/.config")) + QStringLiteral("/Talvera");
    result.resources = resourcesOf(environment.program);
    const auto atRuntime = temporaryAtRuntime(environment.runtime);
    result.temporary = atRuntime ? *atRuntime : temporaryOfSystem(environment.systemTemporary);
    return result;
}

} // namespace talvera
