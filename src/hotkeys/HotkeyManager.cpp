// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyManager.h"

#include <utility>

namespace talvera {

HotkeyManager::HotkeyManager(MainActor& mainActor, EventTapFactory& taps, Console& console)
    : m_mainActor(mainActor)
    , m_tap(mainActor, taps, console, QStringLiteral("HotkeyManager")) {}

void HotkeyManager::install() {
    if (m_tap.isWorking())
        return;
    if (m_isPressed)
        endPress(); // its end was lost with the former tap
    if (m_tap.install([this](const KeyEvent& event) { return handle(event); }))
        watch();
}

void HotkeyManager::setBinding(const HotkeyBinding& binding) {
    bool isNew = false;
    {
        const std::scoped_lock lock(m_bindingLock);
        if (m_isPressed)
            endPress();
        isNew = m_binding != binding;
        m_binding = binding;
    }
    if (isNew)
        watch();
}

void HotkeyManager::setShortcutIsRecorded(bool recorded) {
    if (std::exchange(m_isShortcutRecorded, recorded) == recorded || !bindingCopy().asSpecialKey())
        return;
    if (m_isPressed)
        endPress();
    watch();
}

void HotkeyManager::watch() {
    const auto binding = bindingCopy();
    if (m_isShortcutRecorded && binding.asSpecialKey())
        return m_tap.watchNothing();
    m_tap.watch([&binding](EventTap& tap) {
        const auto* chord = binding.asChord();
        return chord ? tap.watchChord({chord->modifiers, chord->keyCode})
                     : tap.watchKey(keyCode(*binding.asSpecialKey()));
    });
}

Verdict HotkeyManager::handle(const KeyEvent& event) {
    if (m_tap.recovers(event))
        return Verdict::Pass;
    const auto binding = bindingCopy();
    if (const auto* chord = binding.asChord())
        return handleChord(*chord, event);
    handleSpecialKey(*binding.asSpecialKey(), event);
    return Verdict::Pass; // the system and other applications see a special key as usual
}

Verdict HotkeyManager::handleChord(const HotkeyBinding::Chord& chord, const KeyEvent& event) {
    if (event.keyCode != chord.keyCode)
        return Verdict::Pass;
    const bool hasModifiers = (event.flags & chord.modifiers) == chord.modifiers;
    if (event.type == KeyEventType::KeyDown && hasModifiers) {
        if (m_isPressed)
            return Verdict::Pass; // a repeat
        startPress();
        return Verdict::Swallow;
    }
    // Only the key's own release ends a press, whatever is held with it by then.
    if (event.type == KeyEventType::KeyUp && m_isPressed) {
        endPress();
        return Verdict::Swallow;
    }
    return Verdict::Pass;
}

void HotkeyManager::handleSpecialKey(HotkeyBinding::SpecialKey key, const KeyEvent& event) {
    if (event.keyCode != keyCode(key)) {
        if (m_isPressed && isPress(event))
            tellOtherKey();
        return;
    }
    if (event.type != KeyEventType::FlagsChanged)
        return;
    const bool isHeld = (event.flags & heldFlag(key)) != 0;
    if (isHeld && !m_isPressed)
        startPress();
    else if (!isHeld && m_isPressed)
        endPress();
}

void HotkeyManager::startPress() {
    m_tap.heard();
    m_isPressed = true;
    m_isOtherKeyTold = false;
    tell(&HotkeyManager::onPressStart);
}

void HotkeyManager::endPress() {
    m_isPressed = false;
    tell(&HotkeyManager::onPressEnd);
}

void HotkeyManager::tellOtherKey() {
    if (!std::exchange(m_isOtherKeyTold, true))
        tell(&HotkeyManager::onOtherKeyWhileHeld);
}

void HotkeyManager::tell(std::function<void()> HotkeyManager::*callback) {
    m_mainActor.post([this, callback] {
        if (const auto call = this->*callback) // a copy, which lives until the call ends
            call();
    });
}

HotkeyBinding HotkeyManager::bindingCopy() {
    const std::scoped_lock lock(m_bindingLock);
    return m_binding;
}

} // namespace talvera
