// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QPoint>

#include <functional>

namespace talvera {

/// Sees the presses of the mouse in all applications, and takes none of them away. Main thread only.
class PointerMonitor {
public:
    virtual ~PointerMonitor() = default;

    /// Calls `pressed` in a turn of its own for each press of the left or right button, with the pointer's
    /// place in the coordinates that windows are placed in, until the subscription ends.
    [[nodiscard]] virtual Subscription watchPresses(std::function<void(QPoint place)> pressed) = 0;
};

} // namespace talvera
