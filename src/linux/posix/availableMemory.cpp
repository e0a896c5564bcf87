// SPDX-License-Identifier: MIT
#include "linux/posix/availableMemory.h"

#include <QByteArrayList>
#include <QFile>

namespace talvera {

std::optional<qint64> availableMemory() {
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    constexpr qint64 unit = 1024;
    const auto lines = file.readAll().split('\n');
    for (const auto& line : lines) { // such as "MemAvailable:   12345 kB"
        if (!line.startsWith("MemAvailable:"))
            continue;
        bool isNumber = false;
        const auto count = line.simplified().split(' ').value(1).toLongLong(&isNumber);
        return isNumber ? std::optional(count * unit) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace talvera
