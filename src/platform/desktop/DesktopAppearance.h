// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

namespace talvera {

/// How the user's desktop looks. Main thread only.
class DesktopAppearance {
public:
    DesktopAppearance() = default;
    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;
    virtual ~DesktopAppearance() = default;

    Published<bool> isDark{false};
};

} // namespace talvera
