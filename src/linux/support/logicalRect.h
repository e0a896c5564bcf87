// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace talvera {

/// A rectangle in the server's pixels, in the coordinates that windows are placed in: each screen keeps its
/// corner, and lengths on it are divided by its scale.
QRect logicalRect(const QRect& native);

} // namespace talvera
