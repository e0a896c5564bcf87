// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "platform/keyboard/EventTap.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class Console;
class MainActor;

/// The tap of one hotkey, and whether that can be had. Main thread only.
class HotkeyTap {
public:
    /// Makes the tap wait for something.
    using Watch = std::function<WatchResult(EventTap&)>;

    /// `owner` begins the lines of the log.
    HotkeyTap(MainActor& mainActor, EventTapFactory& taps, Console& console, QString owner);

    /// Tells that what was to be watched can't be had, in a later turn of the main actor; read at that
    /// moment.
    std::function<void(WatchResult)> onRefused;

    /// The tap, once `install` has succeeded and as long as it works.
    const EventTap* get() const { return isWorking() ? m_tap.get() : nullptr; }
    bool isWorking() const { return m_tap && !m_tap->isBroken(); }

    /// Creates and enables the tap; a former one goes. A refusal is logged and leaves none.
    bool install(EventTap::Callback callback);

    /// Turns the tap to something else; what can't be had is logged, and told by `onRefused`. Without a tap
    /// nothing happens.
    void watch(const Watch& watch);
    void watchNothing();

    /// What the tap waits for has been pressed, so it can be had by now.
    void heard();

    /// How often that has happened.
    Published<int> presses{0};

    /// The tap has been told of a time-out, or of a user who stopped it. It is enabled again at once.
    bool recovers(const KeyEvent& event);

    /// What came of the wish to watch; nothing as long as nothing is watched.
    Published<std::optional<WatchResult>> result;

private:
    void tell(WatchResult now);

    MainActor& m_mainActor;
    EventTapFactory& m_taps;
    Console& m_console;
    const QString m_owner;
    std::unique_ptr<EventTap> m_tap;
};

} // namespace talvera
