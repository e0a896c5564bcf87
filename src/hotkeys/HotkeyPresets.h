// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyBinding.h"

#include <QStringList>

#include <array>

namespace talvera {

/// A binding that the settings window and the wizard offer. Texts are pairs of a dotted key and its English
/// default.
struct HotkeyPreset {
    struct Text {
        const char* key;
        const char* defaultText;
    };

    const char* id;
    HotkeyBinding binding;
    QStringList keys; ///< the key caps drawn for it
    bool recommended;
    Text settingsLabel;
    Text onboardingLabel;
    Text onboardingDescription;
};

/// In the order in which they are offered.
const std::array<HotkeyPreset, 4>& hotkeyPresets();

} // namespace talvera
