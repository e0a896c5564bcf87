// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "hotkeys/HotkeyBinding.h"
#include "platform/keyboard/EventTap.h"
#include "platform/system/Console.h"

#include <functional>
#include <memory>
#include <mutex>

namespace talvera {

/// Turns the user's binding into two callbacks: press started, press ended. What a press means is not its
/// business. One for the life of the process. Main thread only.
class HotkeyManager {
public:
    HotkeyManager(MainActor& mainActor, EventTapFactory& taps, Console& console);

    /// Run in a later turn of the main actor; read at that moment.
    std::function<void()> onPressStart;
    std::function<void()> onPressEnd;
    /// Tells that the binding can't be had, so that the user hears of it; the same holds for it.
    std::function<void(WatchResult)> onBindingRefused;

    /// Creates the tap. Does nothing when there is one, so that it can be tried again.
    void install();

    /// Changes the binding at any time. A press in progress ends with its binding.
    void setBinding(const HotkeyBinding& binding);

    /// The tap, once `install` has succeeded.
    const EventTap* eventTap() const { return m_eventTap.get(); }
    bool isPressed() const { return m_isPressed; }

private:
    Verdict handle(const KeyEvent& event);
    Verdict handleChord(const HotkeyBinding::Chord& chord, const KeyEvent& event);
    void handleSpecialKey(HotkeyBinding::SpecialKey key, const KeyEvent& event);
    void startPress();
    void endPress();
    void watch(const HotkeyBinding& binding);
    HotkeyBinding bindingCopy();

    MainActor& m_mainActor;
    EventTapFactory& m_taps;
    Console& m_console;

    std::unique_ptr<EventTap> m_eventTap;
    bool m_isPressed = false;
    std::mutex m_bindingLock; // guards the binding, should taps come to call back on threads of their own
    HotkeyBinding m_binding;
};

} // namespace talvera
