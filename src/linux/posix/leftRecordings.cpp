// SPDX-License-Identifier: MIT
#include "linux/posix/leftRecordings.h"

#include <QDir>

namespace talvera {

void removeLeftRecordings(const QString& temporaryDirectory) {
    QDir directory(temporaryDirectory);
    // It is also where we run, so a version that didn't prevent it may have left its memory there in a core
    // file.
    const QStringList ours = {QStringLiteral("talvera-*"), QStringLiteral("core"), QStringLiteral("core.*")};
    const auto left = directory.entryList(ours, QDir::Files | QDir::Hidden | QDir::System);
    for (const auto& name : left)
        directory.remove(name);
}

} // namespace talvera
