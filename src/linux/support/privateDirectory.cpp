// SPDX-License-Identifier: MIT
#include "linux/support/privateDirectory.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace talvera {

bool isOwnDirectory(const QString& path, mode_t others) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & others) == 0;
}

bool makePrivateDirectory(const QString& path) {
    constexpr mode_t privateMode = 0700;
    const auto name = QFile::encodeName(path);
    if (::mkdir(name.constData(), privateMode) != 0 && errno != EEXIST)
        return false;
    return isOwnDirectory(path, 0077) && ::access(name.constData(), W_OK | X_OK) == 0;
}

} // namespace talvera
