// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyBinding.h"
#include "hotkeys/HotkeyTap.h"

#include <functional>
#include <mutex>
#include <optional>

namespace talvera {

class MainActor;

/// The key that switches translation on or off: a chord that acts once each time it is struck. Special keys
/// are no chords, so one that is bound does nothing. One for the life of the process. Main thread only.
class TranslateToggleHotkey {
public:
    TranslateToggleHotkey(MainActor& mainActor, EventTapFactory& taps, Console& console);

    /// Called in a later turn of the main actor when the key is struck; read at that moment.
    std::function<void()> onTrigger;
    /// Tells that the binding can't be had, so that the user hears of it; the same holds for it.
    std::function<void(WatchResult)>& onBindingRefused() { return m_tap.onRefused; }

    /// Creates the tap. Does nothing when there is one that works, so that it can be tried again.
    void install();

    /// Absent: the key is off.
    void setBinding(const std::optional<HotkeyBinding>& binding);

    /// The tap, once `install` has succeeded and as long as it works.
    const EventTap* eventTap() const { return m_tap.get(); }

    /// What came of the binding; nothing when no chord is bound.
    Published<std::optional<WatchResult>>& watchResult() { return m_tap.result; }
    /// How often it has been struck.
    Published<int>& presses() { return m_tap.presses; }
    /// Striking the key does something.
    bool acts() const { return m_tap.isWorking() && m_tap.result.get() == WatchResult::Watching; }

private:
    Verdict handle(const KeyEvent& event);
    void watch();
    std::optional<HotkeyBinding> bindingCopy();

    MainActor& m_mainActor;
    HotkeyTap m_tap;
    std::mutex m_bindingLock; // guards the binding, should taps come to call back on threads of their own
    std::optional<HotkeyBinding> m_binding;
};

} // namespace talvera
