// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/FocusProtectionMode.h"

namespace talvera {

/// The preferences that delivery asks for, at the moment it needs them. Main thread only.
class DeliverySettings {
public:
    virtual ~DeliverySettings() = default;

    virtual bool protectFocusTarget() const = 0;
    virtual FocusProtectionMode focusProtectionMode() const = 0;
};

} // namespace talvera
