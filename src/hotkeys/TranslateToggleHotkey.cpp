// SPDX-License-Identifier: MIT
#include "hotkeys/TranslateToggleHotkey.h"

#include "concurrency/MainActor.h"

namespace talvera {

TranslateToggleHotkey::TranslateToggleHotkey(MainActor& mainActor, EventTapFactory& taps, Console& console)
    : m_mainActor(mainActor)
    , m_tap(mainActor, taps, console, QStringLiteral("TranslateToggleHotkey")) {}

void TranslateToggleHotkey::install() {
    if (m_tap.isWorking())
        return;
    if (m_tap.install([this](const KeyEvent& event) { return handle(event); }))
        watch();
}

void TranslateToggleHotkey::setBinding(const std::optional<HotkeyBinding>& binding) {
    bool isNew = false;
    {
        const std::scoped_lock lock(m_bindingLock);
        isNew = m_binding != binding;
        m_binding = binding;
    }
    if (isNew)
        watch();
}

void TranslateToggleHotkey::watch() {
    const auto binding = bindingCopy();
    const auto* chord = binding ? binding->asChord() : nullptr;
    if (!chord)
        return m_tap.watchNothing();
    m_tap.watch([chord](EventTap& tap) { return tap.watchStroke({chord->modifiers, chord->keyCode}); });
}

Verdict TranslateToggleHotkey::handle(const KeyEvent& event) {
    if (m_tap.recovers(event))
        return Verdict::Pass;
    const auto binding = bindingCopy();
    const auto* chord = binding ? binding->asChord() : nullptr;
    const bool isStruck = chord && event.type == KeyEventType::KeyDown && !event.autorepeat &&
                          event.keyCode == chord->keyCode &&
                          (event.flags & chord->modifiers) == chord->modifiers;
    if (!isStruck)
        return Verdict::Pass;
    m_tap.heard();
    m_mainActor.post([this] {
        if (const auto call = onTrigger) // a copy, which lives until the call ends
            call();
    });
    return Verdict::Swallow;
}

std::optional<HotkeyBinding> TranslateToggleHotkey::bindingCopy() {
    const std::scoped_lock lock(m_bindingLock);
    return m_binding;
}

} // namespace talvera
