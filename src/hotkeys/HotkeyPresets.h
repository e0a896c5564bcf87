// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyBinding.h"

#include <QString>
#include <QStringList>

#include <array>

namespace talvera {

/// A binding that the settings window and the wizard offer.
struct HotkeyPreset {
    QString id;
    HotkeyBinding binding;
    QStringList keys; ///< the key caps drawn for it
    bool recommended = false;
    QString settingsLabel;
    QString onboardingLabel;
    QString onboardingDescription;
};

/// What the hotkey is until the user chooses one: a key held alone, or a chord in a session that tells of
/// chords alone.
HotkeyBinding defaultHotkey(bool areKeysHeardAlone = true);

/// In the order in which they are offered, in the words of the loaded catalogs. Main thread only.
std::array<HotkeyPreset, 4> hotkeyPresets(const HotkeyBinding& recommended = defaultHotkey());

} // namespace talvera
