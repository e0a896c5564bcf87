// SPDX-License-Identifier: MIT
#include "platform/linux/posix/PosixApplicationHost.h"

#include <QDir>

namespace talvera {

void PosixApplicationHost::changeCurrentDirectory(const QString& path) {
    QDir::setCurrent(path);
}

} // namespace talvera
