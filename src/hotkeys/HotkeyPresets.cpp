// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyPresets.h"

namespace talvera {

const std::array<HotkeyPreset, 4>& hotkeyPresets() {
    using Key = HotkeyBinding::SpecialKey;
    static const std::array<HotkeyPreset, 4> presets{{
        {"rcmd",
         HotkeyBinding::holdSpecial(Key::RightCommand),
         {QStringLiteral("Right ⌘")},
         true,
         {"settings.hotkey.preset.rcmd", "Right Command hold"},
         {"onboarding.hotkey.preset.rcmd.label", "Right Command"},
         {"onboarding.hotkey.preset.rcmd.desc", "Hold right ⌘. No system conflicts on any Apple hardware."}},
        {"fn",
         HotkeyBinding::holdSpecial(Key::Fn),
         {QStringLiteral("fn")},
         false,
         {"settings.hotkey.preset.fn", "Globe / Fn hold"},
         {"onboarding.hotkey.preset.fn.label", "Globe / Fn"},
         {"onboarding.hotkey.preset.fn.desc", "Hold the globe key. One hand, no conflicts."}},
        {"default",
         HotkeyBinding::chord(0xC0000, 49),
         {QStringLiteral("⌃"), QStringLiteral("⌥"), QStringLiteral("Space")},
         false,
         {"settings.hotkey.preset.default", "Control + Option + Space"},
         {"onboarding.hotkey.preset.default.label", "Control + Option + Space"},
         {"onboarding.hotkey.preset.default.desc", "Classic chord. Press and hold."}},
        {"caps",
         HotkeyBinding::holdSpecial(Key::CapsLock),
         {QStringLiteral("⇪")},
         false,
         {"settings.hotkey.preset.caps", "Caps Lock hold"},
         {"onboarding.hotkey.preset.caps.label", "Caps Lock"},
         {"onboarding.hotkey.preset.caps.desc", "Repurposes caps lock."}},
    }};
    return presets;
}

} // namespace talvera
