// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyRecorder.h"

#include <optional>
#include <utility>

namespace talvera {

namespace {

/// What counts of the flags of an event; below are bits that tell a key from its twin.
constexpr std::uint64_t independentFlags = 0xFFFF0000;
constexpr std::uint64_t chordModifiers =
    KeyFlag::Control | KeyFlag::Option | KeyFlag::Shift | KeyFlag::Command;

/// The special key that has just gone down with nothing else held. Never Fn: many a keyboard sends it with
/// other keys, so it can only be chosen from the presets.
std::optional<HotkeyBinding::SpecialKey> specialKeyAlone(VirtualKey key, std::uint64_t flags) {
    using Special = HotkeyBinding::SpecialKey;
    for (const auto special : {Special::RightCommand, Special::RightOption, Special::CapsLock}) {
        if (key == keyCode(special) && flags == heldFlag(special))
            return special;
    }
    return std::nullopt;
}

} // namespace

HotkeyRecorder::RecorderView::RecorderView(std::function<void()> beep)
    : m_beep(std::move(beep)) {}

void HotkeyRecorder::RecorderView::mouseDown() {
    if (onFirstResponder)
        onFirstResponder();
    isArmed.set(true);
}

void HotkeyRecorder::RecorderView::hostUpdate(bool isRecording) {
    isArmed.set(isRecording);
    if (isRecording && onFirstResponder)
        onFirstResponder();
}

bool HotkeyRecorder::RecorderView::keyDown(VirtualKey keyCode, std::uint64_t flags) {
    if (!isArmed.get())
        return false;
    if (keyCode == VirtualKey::Escape && (flags & independentFlags) == 0) {
        isArmed.set(false);
        return true;
    }
    const auto modifiers = flags & chordModifiers;
    if (modifiers == 0)
        m_beep();
    else
        capture(HotkeyBinding::chord(modifiers, keyCode));
    return true;
}

bool HotkeyRecorder::RecorderView::flagsChanged(VirtualKey keyCode, std::uint64_t flags) {
    if (!isArmed.get())
        return false;
    if (const auto special = specialKeyAlone(keyCode, flags & independentFlags))
        capture(HotkeyBinding::holdSpecial(*special));
    return true;
}

void HotkeyRecorder::RecorderView::capture(const HotkeyBinding& binding) {
    if (const auto tell = onCapture) // a copy, which lives until the call ends
        tell(binding);
}

HotkeyRecorder::HotkeyRecorder(std::function<void()> beep)
    : view(std::move(beep)) {
    view.onCapture = [this](const HotkeyBinding& binding) {
        isRecording.set(false);
        if (const auto tell = onCapture)
            tell(binding);
    };
}

} // namespace talvera
