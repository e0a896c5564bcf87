// SPDX-License-Identifier: MIT
#pragma once

#include "persistence/AppSettings.h"

namespace talvera {

/// Choosing Fn as the hotkey ends tap-to-toggle, which it can't do; leaving Fn doesn't bring it back. For the
/// length of its life. Main thread only; the settings outlive it.
class TapToToggleRule {
public:
    explicit TapToToggleRule(AppSettings& settings)
        : m_bindings(settings.hotkeyBinding.observe([&settings](const HotkeyBinding& binding) {
            if (isFn(binding))
                settings.hotkeyTapToToggle.set(false);
        })) {}

    static bool isFn(const HotkeyBinding& binding) {
        return binding == HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn);
    }

private:
    Subscription m_bindings;
};

} // namespace talvera
