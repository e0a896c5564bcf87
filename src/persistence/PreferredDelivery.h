// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/DeliverySettings.h"
#include "persistence/AppSettings.h"

namespace talvera {

/// What the user's preferences say about delivery.
class PreferredDelivery final : public DeliverySettings {
public:
    explicit PreferredDelivery(const AppSettings& settings)
        : m_settings(settings) {}

    bool protectFocusTarget() const override { return m_settings.protectFocusTarget.get(); }
    FocusProtectionMode focusProtectionMode() const override { return m_settings.focusProtectionMode.get(); }

private:
    const AppSettings& m_settings;
};

} // namespace talvera
