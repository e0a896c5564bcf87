// SPDX-License-Identifier: MIT
#include "linux/posix/PosixApplicationHost.h"

#include <QCoreApplication>
#include <QDir>

namespace talvera {

void PosixApplicationHost::changeCurrentDirectory(const QString& path) {
    QDir::setCurrent(path);
}

void PosixApplicationHost::terminate() {
    QCoreApplication::quit();
}

} // namespace talvera
