// SPDX-License-Identifier: MIT
#include "StoryFile.h"

#include <QFile>

#include <stdexcept>

namespace talvera::simulation {

QString readStoryFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("can't be read");
    return QString::fromUtf8(file.readAll());
}

void writeStoryFile(const QString& path, const QString& text) {
    QFile file(path);
    const auto bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw std::runtime_error("can't be written");
}

} // namespace talvera::simulation
