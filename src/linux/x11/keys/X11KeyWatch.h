// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/keys/X11CapsLock.h"
#include "linux/x11/keys/X11ChordGrabs.h"
#include "linux/x11/keys/X11HeldKeys.h"
#include "linux/x11/server/X11InputDevices.h"
#include "platform/keyboard/EventTap.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace talvera {

/// A chord of which the key down alone is kept from the application.
struct KeyStroke {
    KeyChord chord;

    bool operator==(const KeyStroke&) const = default;
};

/// What a tap waits for: a chord held, a chord struck, or a key held alone.
using KeyInterest = std::variant<KeyChord, KeyStroke, VirtualKey>;

/// The chord among these; null for a key alone.
const KeyChord* chordOf(const KeyInterest& interest);

/// Makes key events of what the X server tells about the user's keyboards.
///
/// Two connections see every press. The one with the raw events knows which device a key is on, so that
/// what programs post, we among them, neither starts nor ends anything. The one with the grabs knows that
/// the key went to us alone. A chord is pressed when both tell the same key down: while a menu
/// or a screen locker has the keyboard, the chord goes there, and is not ours to act on. A key held alone
/// goes where it always goes, and the raw events are all there is of it.
///
/// What the user types passes through here. Of keys that no tap waits for, only held modifiers are kept, as
/// long as they are held, and what is reported of another key that is struck while one is held alone doesn't
/// say which. One thread at a time.
class X11KeyWatch {
public:
    using Report = std::function<void(const KeyEvent&)>;

    /// Null when the session doesn't let us watch keys. `sysfs` is where the kernel tells what keys keyboards
    /// have.
    static std::unique_ptr<X11KeyWatch> open(const X11Server& server, Report report,
                                             const std::string& sysfs = "/sys");

    /// Waits for these and nothing else; the answers are in their order. A press in progress of a chord
    /// that is no longer among them is let go.
    std::vector<WatchResult> waitFor(const std::vector<KeyInterest>& interests);

    /// Swallows and reports nothing from here on, but keeps the rest of a press in progress from the focused
    /// application. `heardPresses` are the keys whose presses were reported and heard, but not their ends.
    void suspend(const std::set<VirtualKey>& heardPresses);
    /// Ends that with the next `waitFor`, which also reports the ends of presses that have been missed.
    void resume();

    /// Works off what the server has told. False when the server is gone.
    bool readEvents();

    /// Readable when there is something to work off.
    std::array<int, 2> descriptors() const;

private:
    X11KeyWatch(const X11Server& server, Report report, std::string sysfs);

    bool selectEvents();
    bool readRawEvent();
    bool readGrabbedEvent();
    void handleInput(const xcb_ge_generic_event_t& event);

    struct Moment {
        xcb_timestamp_t time;
        std::uint32_t lastRequest; // of ours that the server had worked off by then
    };
    void pressed(std::uint16_t device, XKeycode keycode, const Moment& moment);
    void released(std::uint16_t device, XKeycode keycode);
    void startChordIfBothSay(XKeycode keycode);
    bool isBeforeReturn(XKeycode keycode, const Moment& moment) const;
    void startChordThatPassed(XKeycode keycode);
    void startChord(XKeycode keycode, std::uint64_t flags);
    const KeyInterest* pressedChord(VirtualKey keyCode, std::uint64_t flags) const;
    bool isOtherChordHeld(VirtualKey keyCode) const;
    void reportHeldKey(VirtualKey keyCode);
    void reportOtherKeyThan(std::optional<VirtualKey> key);
    void reportChordEnd(VirtualKey keyCode);
    void reportMissedEnds();

    bool forgetPressesOtherThanOf(const std::vector<KeyInterest>& interests);
    void retryTakenChords(VirtualKey keyCode);
    std::vector<WatchResult> applyInterests();
    WatchResult resultForKeyAlone(VirtualKey keyCode);
    bool isOnLayout(VirtualKey keyCode) const;
    void chooseRelevantKeys();
    bool isHeld(VirtualKey keyCode) const;
    bool isOn(VirtualKey keyCode);
    std::uint64_t flags(VirtualKey about);
    std::vector<KeyChord> chords() const;

    struct RawKeyDown {
        xcb_timestamp_t time;
        bool isReleased = false; // since then
    };
    /// Of a chord that an application had for the rest of a stroke.
    struct Return {
        XKeycode keycode;
        std::uint32_t request; // what the server tells after it was told with the grabs in place
    };

    const std::unique_ptr<X11Connection> m_events;
    X11ChordGrabs m_grabs;
    Report m_report;
    std::uint8_t m_inputExtension = 0;

    const std::string m_sysfs;
    X11InputDevices m_devices;
    X11HeldKeys m_heldKeys;
    X11CapsLock m_capsLock;

    std::vector<KeyInterest> m_interests;
    bool m_isSuspended = false;
    bool m_hasMissedEnds = false;
    bool m_hasTakenChords = false;
    XKeycodeBits m_relevantKeys;       // those that m_heldKeys hears of
    bool m_isOtherKeyReported = false; // since a key is held alone
    std::set<VirtualKey> m_chordKeys;  // of m_interests, and so on
    std::set<VirtualKey> m_aloneKeys;

    // The latest of each key that one connection has told and the other has not: a chord may follow another
    // before both have told the first.
    std::map<XKeycode, RawKeyDown> m_rawKeyDowns;
    std::map<XKeycode, X11ChordGrabs::KeyDown> m_grabbedKeyDowns;
    std::optional<Return> m_return;         // the latest
    std::set<VirtualKey> m_reportedPresses; // their ends have not been reported yet
};

} // namespace talvera
