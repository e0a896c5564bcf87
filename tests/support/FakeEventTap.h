// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <optional>
#include <set>
#include <vector>

namespace talvera::test {

class FakeKeyboard;

/// A tap on a FakeKeyboard. It hears every event, as a tap may.
class FakeEventTap final : public EventTap {
public:
    FakeEventTap(FakeKeyboard& keyboard, Callback callback);
    ~FakeEventTap() override;

    void setEnabled(bool enabled) override;
    WatchResult watchChord(const KeyChord& chord) override;
    WatchResult watchStroke(const KeyChord& chord) override { return watchChord(chord); }
    WatchResult watchKey(VirtualKey keyCode) override;
    void watchNothing() override;
    bool isBroken() const override { return m_isBroken; }

    bool isEnabled() const { return m_isEnabled; }
    const std::optional<KeyChord>& watchedChord() const { return m_chord; }
    const std::optional<VirtualKey>& watchedKey() const { return m_key; }

private:
    friend class FakeKeyboard;

    Verdict tell(const KeyEvent& event);

    FakeKeyboard& m_keyboard;
    Callback m_callback;
    bool m_isEnabled = false;
    bool m_isBroken = false;
    bool m_timedOut = false;
    bool m_hasMissedKeys = false; // since it was last enabled
    std::optional<KeyChord> m_chord;
    std::optional<VirtualKey> m_key;
    std::optional<KeyEvent> m_pressTold; // of what the tap waits for
};

/// The keyboards of a session, the taps on them, and what is left for the focused application.
class FakeKeyboard final : public EventTapFactory {
public:
    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;
    bool hearsKeysAlone() const override { return !tellsChordsOnly; }

    /// The session tells of chords alone.
    bool tellsChordsOnly = false;
    /// The session does not let us watch keys.
    bool refusesTaps = false;
    /// Chords that other programs hold.
    std::vector<KeyChord> takenChords;
    std::set<VirtualKey> missingKeys;

    /// Taps that exist, the oldest first.
    const std::vector<FakeEventTap*>& taps() const { return m_taps; }
    int tapsCreated() const { return m_tapsCreated; }

    /// One event as it stands; answers whether the application gets it.
    Verdict send(const KeyEvent& event);

    /// Keys, with the events that a real keyboard has for them.
    void press(VirtualKey keyCode);
    void repeat(VirtualKey keyCode);
    void release(VirtualKey keyCode);
    void tap(VirtualKey keyCode);

    /// The keys are as they are on the other one: a program starts while some are held.
    void become(const FakeKeyboard& other);

    /// The taps that there are lose the keyboard.
    void breakTaps();

    /// What reached the focused application.
    const std::vector<KeyEvent>& passed() const { return m_passed; }

    /// The main actor does not answer from here on, until it listens again.
    void stopListening() { m_isListening = false; }
    void listenAgain();

private:
    friend class FakeEventTap;

    /// What the key means is on: it is held, or its lock is set.
    bool isOn(VirtualKey keyCode) const;
    std::uint64_t flags() const;
    Verdict offer(const KeyEvent& event);

    std::vector<FakeEventTap*> m_taps;
    int m_tapsCreated = 0;
    std::set<VirtualKey> m_held;
    bool m_capsLock = false;
    bool m_capsLockEnds = false; // with the release of the key
    bool m_isListening = true;
    std::vector<KeyEvent> m_passed;
};

} // namespace talvera::test
