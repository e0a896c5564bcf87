// SPDX-License-Identifier: MIT
#pragma once

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

/// Modifier bits of key events and bindings.
namespace KeyFlag {
inline constexpr std::uint64_t CapsLock = 0x10000;
inline constexpr std::uint64_t Shift = 0x20000;
inline constexpr std::uint64_t Control = 0x40000;
inline constexpr std::uint64_t Option = 0x80000;   ///< Alt
inline constexpr std::uint64_t Command = 0x100000; ///< Super
inline constexpr std::uint64_t Fn = 0x800000;
} // namespace KeyFlag

/// A key event of the user's keyboards; what we type ourselves is not among them.
struct KeyEvent {
    KeyEventType type = KeyEventType::KeyDown;
    std::uint16_t keyCode = 0; ///< virtual key code: the physical key, whatever the layout
    std::uint64_t flags = 0;   ///< KeyFlag bits after this event
    bool autorepeat = false;
};

enum class Verdict { Pass, Swallow };

/// What a tap's owner wants to be able to swallow.
struct SwallowableChord {
    std::uint64_t modifiers = 0; ///< at least these
    std::uint16_t keyCode = 0;

    bool operator==(const SwallowableChord&) const = default;
};

/// Watches the keyboards of the session. Never lets the user's keyboard wait: if the main actor does not
/// answer in time, the event goes its way, and the owner hears of TapDisabledByTimeout as soon as it listens
/// again. Main thread only.
class EventTap {
public:
    using Callback = std::function<Verdict(const KeyEvent&)>;

    virtual ~EventTap() = default;

    virtual void setEnabled(bool enabled) = 0;

    /// Names the one chord that the callback may swallow, or none. Platforms that must reserve chords
    /// beforehand do it here; a press in progress of the former chord is let go. False when another program
    /// holds the chord.
    virtual bool setSwallowable(const SwallowableChord* chord) = 0;

    /// Names the one key that the callback waits for, so that no other keystroke wakes us; it gets at least
    /// the events of this key.
    virtual void setWatchedKey(std::uint16_t keyCode) = 0;
};

/// Makes taps.
class EventTapFactory {
public:
    virtual ~EventTapFactory() = default;

    /// Creates a tap for key down, key up and flags changed, disabled at first. `callback` runs on the main
    /// actor. Null when the session does not let us watch keys.
    virtual std::unique_ptr<EventTap> create(EventTap::Callback callback) = 0;
};

} // namespace talvera
