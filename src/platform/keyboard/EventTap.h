// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/VirtualKey.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace talvera {

/// Kinds of key events, with the numbers under which they are known.
enum class KeyEventType : std::uint32_t {
    KeyDown = 10,
    KeyUp = 11,
    FlagsChanged = 12,
    TapDisabledByTimeout = 0xFFFFFFFE,
    TapDisabledByUserInput = 0xFFFFFFFF,
};

/// A key event of the user's keyboards; what we type ourselves is not among them.
struct KeyEvent {
    KeyEventType type = KeyEventType::KeyDown;
    VirtualKey keyCode = {};
    std::uint64_t flags = 0; ///< KeyFlag bits after this event
    bool autorepeat = false;
};

/// The event begins a press of its key, or shows that one goes on; otherwise it ends one.
constexpr bool isPress(const KeyEvent& event) {
    return event.type == KeyEventType::KeyDown || (event.type == KeyEventType::FlagsChanged &&
                                                   (event.flags & flagOfModifierKey(event.keyCode)) != 0);
}

enum class Verdict { Pass, Swallow };

/// A key together with at least these modifiers.
struct KeyChord {
    std::uint64_t modifiers = 0; ///< KeyFlag bits
    VirtualKey keyCode = {};

    bool operator==(const KeyChord&) const = default;
};

enum class WatchResult {
    Watching,
    ChordTaken,  ///< another program holds the chord
    Unavailable, ///< no keyboard of this session can produce it
    ChordsOnly,  ///< this session tells of chords, and never of a key held alone
};

/// Watches the keyboards of the session. Never lets the user's keyboard wait: if the main actor does not
/// answer in time, the event goes its way, and the owner hears of TapDisabledByTimeout as soon as it
/// listens again. Where the session itself keeps chords for us, it does so until they are given back, and
/// there is no time-out. Main thread only.
///
/// A tap waits for one thing at a time, so that no other keystroke wakes the owner. Platforms that must
/// reserve chords do it when they are named; a press that is in progress when the tap turns to something
/// else is let go, and its rest reaches the focused application.
class EventTap {
public:
    using Callback = std::function<Verdict(const KeyEvent&)>;

    virtual ~EventTap() = default;

    /// Called when a chord that the tap waits for comes to be had, or to be taken, since the user has changed
    /// what the session binds. A session that tells nobody of such changes never has it called.
    std::function<void(WatchResult)> onResultChange;

    /// A new tap is disabled, and so is one that has just told of TapDisabledByTimeout. A disabled tap
    /// swallows and tells nothing. After a time-out, the end of a press that was told before is told late.
    virtual void setEnabled(bool enabled) = 0;

    /// Waits for a chord: the callback gets at least the key down and the key up of its presses, and may
    /// swallow both. ChordTaken leaves the tap waiting, should the other program let go of the chord.
    virtual WatchResult watchChord(const KeyChord& chord) = 0;

    /// Waits for a chord to be struck: the callback gets at least the key down of its presses, and may
    /// swallow that. Repeats and key ups reach the focused application, where the session can give them back.
    /// ChordTaken is as above.
    virtual WatchResult watchStroke(const KeyChord& chord) = 0;

    /// Waits for a key held alone: the callback gets at least its flag changes and, while its flag is set,
    /// the first press of another key, which may go by the name of Unnamed. It can only pass them. ChordsOnly
    /// leaves the tap waiting for nothing.
    virtual WatchResult watchKey(VirtualKey key) = 0;

    virtual void watchNothing() = 0;

    /// The tap has lost the keyboards and hears nothing any more. A new one may find them again.
    virtual bool isBroken() const = 0;
};

/// Makes taps. The tap made last sees an event first, and what it swallows the others never see.
class EventTapFactory {
public:
    virtual ~EventTapFactory() = default;

    /// Creates a tap for key down, key up and flags changed, disabled and waiting for nothing. `callback`
    /// runs on the main actor. Null when the session does not let us watch keys.
    virtual std::unique_ptr<EventTap> create(EventTap::Callback callback) = 0;

    /// False in a session that tells of chords alone: watchKey() answers ChordsOnly there.
    virtual bool hearsKeysAlone() const { return true; }
};

} // namespace talvera
