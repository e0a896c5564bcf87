// SPDX-License-Identifier: MIT
#include "linux/posix/leftRecordings.h"

#include <QDir>

namespace talvera {

void removeLeftRecordings(const QString& temporaryDirectory) {
    QDir directory(temporaryDirectory);
    const auto left =
        directory.entryList({QStringLiteral("talvera-*")}, QDir::Files | QDir::Hidden | QDir::System);
    for (const auto& name : left)
        directory.remove(name);
}

} // namespace talvera
