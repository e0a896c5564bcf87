// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "hotkeys/HotkeyBinding.h"
#include "hotkeys/HotkeyTap.h"

#include <functional>
#include <mutex>

namespace talvera {

/// Turns the user's binding into callbacks: press started, press ended. What a press means is not its
/// business. One for the life of the process. Main thread only.
class HotkeyManager {
public:
    HotkeyManager(MainActor& mainActor, EventTapFactory& taps, Console& console);

    /// Run in a later turn of the main actor; read at that moment.
    std::function<void()> onPressStart;
    std::function<void()> onPressEnd;
    /// Another key was struck while a special key is held alone: the user may be after a shortcut of the
    /// application. Told once a press, and likewise.
    std::function<void()> onOtherKeyWhileHeld;
    /// Tells that the binding can't be had, so that the user hears of it; the same holds for it.
    std::function<void(WatchResult)>& onBindingRefused() { return m_tap.onRefused; }

    /// Creates the tap. Does nothing when there is one that works, so that it can be tried again.
    void install();

    /// Changes the binding at any time. A press in progress ends with its binding.
    void setBinding(const HotkeyBinding& binding);

    /// A window of ours records a shortcut. A chord is kept from it as from any other window, but a key held
    /// alone isn't listened for meanwhile: the press that records it would be one of the hotkey, too.
    void setShortcutIsRecorded(bool recorded);

    /// The tap, once `install` has succeeded and as long as it works.
    const EventTap* eventTap() const { return m_tap.get(); }
    bool isPressed() const { return m_isPressed; }

    /// What came of the binding; nothing as long as no tap waits for it.
    Published<std::optional<WatchResult>>& watchResult() { return m_tap.result; }
    /// How many presses there have been.
    Published<int>& presses() { return m_tap.presses; }

private:
    Verdict handle(const KeyEvent& event);
    Verdict handleChord(const HotkeyBinding::Chord& chord, const KeyEvent& event);
    void handleSpecialKey(HotkeyBinding::SpecialKey key, const KeyEvent& event);
    void startPress();
    void endPress();
    void tellOtherKey();
    void tell(std::function<void()> HotkeyManager::*callback);
    void watch();
    HotkeyBinding bindingCopy();

    MainActor& m_mainActor;
    HotkeyTap m_tap;
    bool m_isShortcutRecorded = false;
    bool m_isPressed = false;
    bool m_isOtherKeyTold = false; // since the press started
    std::mutex m_bindingLock; // guards the binding, should taps come to call back on threads of their own
    HotkeyBinding m_binding;
};

} // namespace talvera
