// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyPresets.h"

#include "hotkeys/keyNames.h"
#include "text/Localization.h"

namespace talvera {

namespace {

using Special = HotkeyBinding::SpecialKey;

HotkeyPreset rightCommand() {
    return {.id = QStringLiteral("rcmd"),
            .binding = HotkeyBinding::holdSpecial(Special::RightCommand),
            .keys = {specialKeyCap(Special::RightCommand)},
            .settingsLabel = localized("settings.hotkey.preset.rcmd", "Right Command hold"),
            .onboardingLabel = localized("onboarding.hotkey.preset.rcmd.label", "Right Command"),
            .onboardingDescription = localized("onboarding.hotkey.preset.rcmd.desc",
                                               "Hold right ⌘. No system conflicts on any Apple hardware.")};
}

HotkeyPreset fn() {
    return {.id = QStringLiteral("fn"),
            .binding = HotkeyBinding::holdSpecial(Special::Fn),
            .keys = {specialKeyCap(Special::Fn)},
            .settingsLabel = localized("settings.hotkey.preset.fn", "Globe / Fn hold"),
            .onboardingLabel = localized("onboarding.hotkey.preset.fn.label", "Globe / Fn"),
            .onboardingDescription =
                localized("onboarding.hotkey.preset.fn.desc", "Hold the globe key. One hand, no conflicts.")};
}

HotkeyPreset controlOptionSpace() {
    return {.id = QStringLiteral("default"),
            .binding = HotkeyBinding(),
            .keys = modifierCaps(KeyFlag::Control | KeyFlag::Option) << *fixedKeyName(VirtualKey::Space),
            .settingsLabel = localized("settings.hotkey.preset.default", "Control + Option + Space"),
            .onboardingLabel =
                localized("onboarding.hotkey.preset.default.label", "Control + Option + Space"),
            .onboardingDescription =
                localized("onboarding.hotkey.preset.default.desc", "Classic chord. Press and hold.")};
}

HotkeyPreset capsLock() {
    return {.id = QStringLiteral("caps"),
            .binding = HotkeyBinding::holdSpecial(Special::CapsLock),
            .keys = {specialKeyCap(Special::CapsLock)},
            .settingsLabel = localized("settings.hotkey.preset.caps", "Caps Lock hold"),
            .onboardingLabel = localized("onboarding.hotkey.preset.caps.label", "Caps Lock"),
            .onboardingDescription =
                localized("onboarding.hotkey.preset.caps.desc", "Repurposes caps lock.")};
}

} // namespace

HotkeyBinding defaultHotkey(bool areKeysHeardAlone) {
    return areKeysHeardAlone ? HotkeyBinding::holdSpecial(Special::RightCommand) : HotkeyBinding();
}

std::array<HotkeyPreset, 4> hotkeyPresets(const HotkeyBinding& recommended) {
    std::array presets{rightCommand(), fn(), controlOptionSpace(), capsLock()};
    for (auto& preset : presets)
        preset.recommended = preset.binding == recommended;
    return presets;
}

} // namespace talvera
