// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera::simulation {

/// Both throw std::runtime_error when that can't be done.
QString readStoryFile(const QString& path);
void writeStoryFile(const QString& path, const QString& text);

} // namespace talvera::simulation
