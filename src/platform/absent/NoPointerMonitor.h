// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/PointerMonitor.h"

namespace talvera {

/// A session in which a program hears of the presses on its own windows only.
class NoPointerMonitor final : public PointerMonitor {
public:
    Subscription watchPresses(std::function<void(QPoint place)>) override { return {}; }
};

} // namespace talvera
