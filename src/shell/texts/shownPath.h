// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// A path as a user reads it: what lies in the `home` directory begins with "~".
QString shownPath(const QString& path, const QString& home);

} // namespace talvera
