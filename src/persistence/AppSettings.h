// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/FocusProtectionMode.h"
#include "delivery/InsertionMode.h"
#include "hotkeys/HotkeyBinding.h"
#include "hotkeys/HotkeyPresets.h"
#include "language/CleanupTone.h"
#include "persistence/Setting.h"
#include "platform/system/PreferenceStore.h"

#include <optional>

namespace talvera {

/// Every preference of the user. All are loaded once, at construction, with migrations and fallbacks; from
/// then on the values here are the truth, and the store follows them. Main thread only; lives as long as the
/// process, and `store` outlives it. Nothing here fails: what the store can't tell falls back to a default.
class AppSettings {
public:
    /// `unchosen` is what the hotkey is as long as none has been chosen.
    explicit AppSettings(PreferenceStore& store, const HotkeyBinding& unchosen = defaultHotkey());
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    const HotkeyBinding unchosenHotkey;

    /// A TargetLanguage code. Translation is on while it isn't "off"; any other value becomes the last
    /// target.
    Setting<QString> targetLanguageCode;
    /// The target to return to when translation is switched on; never "off".
    Setting<QString> lastTargetLanguageCode;
    /// A Language code, taken from the store as it stands.
    Setting<QString> sourceLanguageCode;
    Setting<HotkeyBinding> hotkeyBinding;
    Setting<bool> aiCleanupEnabled;
    Setting<bool> hasOnboarded;
    Setting<bool> showMenuBarIcon;
    /// Without effect, and never written: the start sound goes by startSoundName alone.
    Setting<bool> soundOnStart;
    Setting<CleanupTone> cleanupTone;
    /// A StartSound name or "Off", taken from the store as it stands.
    Setting<QString> startSoundName;
    Setting<bool> hotkeyTapToToggle;
    Setting<InsertionMode> insertionMode;
    Setting<double> typewriterThresholdSeconds;
    Setting<bool> protectFocusTarget;
    Setting<FocusProtectionMode> focusProtectionMode;
    /// An AppLanguage code. Assigning it also sets the override that the next launch goes by.
    Setting<QString> appLanguage;
    /// Nothing when the user has cleared the shortcut.
    Setting<std::optional<HotkeyBinding>> translateToggleBinding;

    /// Calls `visitor` with every setting, in the order of declaration.
    template <typename Visitor>
    void visit(Visitor&& visitor) {
        visitor(targetLanguageCode);
        visitor(lastTargetLanguageCode);
        visitor(sourceLanguageCode);
        visitor(hotkeyBinding);
        visitor(aiCleanupEnabled);
        visitor(hasOnboarded);
        visitor(showMenuBarIcon);
        visitor(soundOnStart);
        visitor(cleanupTone);
        visitor(startSoundName);
        visitor(hotkeyTapToToggle);
        visitor(insertionMode);
        visitor(typewriterThresholdSeconds);
        visitor(protectFocusTarget);
        visitor(focusProtectionMode);
        visitor(appLanguage);
        visitor(translateToggleBinding);
    }
};

} // namespace talvera
