// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>

namespace talvera::test {

/// How many descriptors this process has open, that of the look among them.
inline int openDescriptors() {
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    return static_cast<int>(
        descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

} // namespace talvera::test
