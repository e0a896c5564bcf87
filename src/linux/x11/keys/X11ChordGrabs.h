// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/XKeycode.h"
#include "platform/keyboard/EventTap.h"

#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace talvera {

/// Chords whose key events the server gives to us instead of the focused application: the key down, the
/// repeats and the key up. No key waits for us: the server hands out the next event without our leave, and
/// takes everything back when our connection ends.
///
/// Has a connection of its own, since the one that holds a grab is told less about the keyboard while the
/// grab lasts. One thread at a time.
class X11ChordGrabs {
public:
    /// A key down that came to us. The same event has the same time wherever it is told.
    struct KeyDown {
        XKeycode keycode;
        xcb_timestamp_t time;
        std::uint16_t state; ///< the modifiers
    };

    explicit X11ChordGrabs(const X11Server& server);
    X11ChordGrabs(const X11ChordGrabs&) = delete;
    X11ChordGrabs& operator=(const X11ChordGrabs&) = delete;
    ~X11ChordGrabs();

    /// Holds these chords and no others; the answers are in their order. Where another program holds a
    /// chord with one of the further modifiers that don't stop it, that combination stays with the program.
    /// Keys that we couldn't type ourselves from then on are noted at the server. The server has worked it
    /// off on return, and so below.
    std::vector<WatchResult> hold(const std::vector<KeyChord>& chords);

    /// Lets the key events of a press in progress go to the focused application.
    void letGoOfPress();

    /// The same for the press of this key in progress: its repeats and its key up go to the application,
    /// and other presses of it too, until it is taken back.
    void letPass(XKeycode key);
    /// The press has ended. True when the chords on the key have to be held again, which `hold` does.
    bool takeBack(XKeycode key);

    /// The next key down that came to us, if there is one already.
    std::optional<KeyDown> nextKeyDown();

    X11Connection& connection() const { return *m_connection; }

private:
    using Combination = std::pair<XKeycode, std::uint16_t>; ///< with the modifiers
    using Combinations = std::set<Combination>;

    Combinations withFurtherModifiers(const KeyChord& chord, std::uint16_t further) const;
    void grab(const Combinations& combinations);
    void letGo(const Combination& combination);
    void noteReservedKeys(const Combinations& wanted);
    void writeNote(const std::set<XKeycode>& keycodes);

    std::unique_ptr<X11Connection> m_connection;
    Combinations m_held;
    std::optional<XKeycode> m_passing; ///< what m_held says of it is true again once it is taken back
    std::optional<std::set<XKeycode>> m_notedKeys;
};

} // namespace talvera
