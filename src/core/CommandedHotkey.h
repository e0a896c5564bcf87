// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

#include <chrono>
#include <optional>

namespace talvera {

class AppSettings;
class DictationController;
class MainActor;

/// The hotkey as other programs press it for the user: those that a desktop's key bindings start. Main thread
/// only.
///
/// Each press and each release is a process, and these may overtake one another: `begun` tells when it was
/// started, on any clock that all of them share. Nothing is for a process that can't be asked.
class CommandedHotkey {
public:
    using Begun = std::optional<std::chrono::milliseconds>;

    /// All three outlive this.
    CommandedHotkey(MainActor& actor, const AppSettings& settings, DictationController& dictation);

    /// The key goes down. A press whose release has been told already is over.
    void press(Begun begun);
    /// The key goes up.
    void release(Begun begun);
    /// For desktops that don't tell when a key goes up: begins a dictation, or ends the one that is recorded.
    void toggle();

    /// A command that comes back so soon, without a release in between, is the auto-repeat of a held key.
    /// Most desktops begin that after 0.5 to 0.66 seconds.
    static constexpr Duration repeatTime = seconds(0.8);

private:
    bool isOver(Begun begun) const;
    bool isRepeat();

    MainActor& m_actor;
    const AppSettings& m_settings;
    DictationController& m_dictation;
    Begun m_released;                ///< the latest release
    std::optional<Instant> m_struck; ///< the latest press or toggle, if no release came since
};

} // namespace talvera
