// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyManager.h"

#include <utility>

namespace talvera {

HotkeyManager::HotkeyManager(MainActor& mainActor, EventTapFactory& taps, Console& console)
    : m_mainActor(mainActor)
    , m_taps(taps)
    , m_console(console) {}

void HotkeyManager::install() {
    if (hasTap())
        return;
    if (m_isPressed)
        endPress(); // its end was lost with the former tap
    m_eventTap.reset();
    m_eventTap = m_taps.create([this](const KeyEvent& event) { return handle(event); });
    if (!m_eventTap) {
        m_console.log(
            QStringLiteral("HotkeyManager: failed to create event tap — check Accessibility & Input "
                           "Monitoring permissions."));
        return;
    }
    m_eventTap->setEnabled(true);
    watch(bindingCopy());
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
    if (isNew && m_eventTap)
        watch(binding);
}

void HotkeyManager::watch(const HotkeyBinding& binding) {
    const auto* chord = binding.asChord();
    const auto result = chord ? m_eventTap->watchChord({chord->modifiers, chord->keyCode})
                              : m_eventTap->watchKey(keyCode(*binding.asSpecialKey()));
    if (result == WatchResult::Watching)
        return;
    m_console.log(result == WatchResult::ChordTaken
                      ? QStringLiteral("HotkeyManager: another program holds the bound shortcut.")
                      : QStringLiteral("HotkeyManager: no keyboard has the bound key."));
    m_mainActor.post([this, result] {
        if (const auto tell = onBindingRefused)
            tell(result);
    });
}

Verdict HotkeyManager::handle(const KeyEvent& event) {
    if (event.type == KeyEventType::TapDisabledByTimeout ||
        event.type == KeyEventType::TapDisabledByUserInput) {
        if (m_eventTap)
            m_eventTap->setEnabled(true);
        return Verdict::Pass;
    }
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
