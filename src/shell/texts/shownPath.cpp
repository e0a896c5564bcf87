// SPDX-License-Identifier: MIT
#include "shell/texts/shownPath.h"

namespace talvera {

QString shownPath(const QString& path, const QString& home) {
    const bool isWithin = !home.isEmpty() && (path == home || path.startsWith(home + u'/'));
    return isWithin ? u'~' + path.mid(home.size()) : path;
}

} // namespace talvera
