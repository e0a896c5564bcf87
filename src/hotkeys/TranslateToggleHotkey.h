// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyBinding.h"
#include "platform/keyboard/EventTap.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace talvera {

/// The key that switches translation on or off. It creates no tap yet: the key does nothing.
class TranslateToggleHotkey {
public:
    /// Called on the main actor when the key is struck.
    std::function<void()> onTrigger;

    /// Creates the tap.
    void install() {}

    /// Absent: the key is off.
    void setBinding(const std::optional<HotkeyBinding>& binding) {
        const std::scoped_lock lock(m_bindingLock);
        m_binding = binding;
    }

    /// The tap, once `install` has succeeded.
    const EventTap* eventTap() const { return m_eventTap.get(); }

private:
    std::unique_ptr<EventTap> m_eventTap;
    std::mutex m_bindingLock; // guards the binding
    std::optional<HotkeyBinding> m_binding;
};

} // namespace talvera
