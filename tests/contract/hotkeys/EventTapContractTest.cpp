// SPDX-License-Identifier: MIT
// What every event tap promises, asked of the one that tests use and of the real one alike.
#include "FakeEventTap.h"
#include "RealKeyboard.h"
#include "linux/x11/keys/X11KeyCodes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

using namespace talvera;

namespace {

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;

/// A session with keyboards, an application and taps. Keys are named by their virtual codes; what reaches the
/// application by the codes in order, each press and each release one entry.
struct FakeSession {
    test::FakeKeyboard keyboard;
    std::size_t taken = 0;

    EventTapFactory& taps() { return keyboard; }
    void press(VirtualKey key) { keyboard.press(key); }
    void release(VirtualKey key) { keyboard.release(key); }
    void settle() {}
    std::vector<VirtualKey> reachedApplication() {
        std::vector<VirtualKey> keys;
        for (; taken < keyboard.passed().size(); ++taken)
            keys.push_back(keyboard.passed()[taken].keyCode);
        return keys;
    }
    void letAnotherProgramHold(const KeyChord& chord) { keyboard.takenChords.push_back(chord); }
    void removeKey(VirtualKey key) { keyboard.missingKeys.insert(key); }
    void stopListening() { keyboard.stopListening(); }
    void awaitTimeout() {}
    void listenAgain() { keyboard.listenAgain(); }
};

struct RealSession {
    static constexpr auto bound = std::chrono::milliseconds(300);

    test::RealKeyboard keyboard{bound};
    std::unique_ptr<X11Connection> other = X11Server().connect();
    bool isListening = true;

    static XKeycode keycode(VirtualKey key) { return X11KeyCodes::fromVirtual(key).front(); }

    EventTapFactory& taps() { return keyboard.taps(); }
    void press(VirtualKey key) { keyboard.keys.press(keycode(key)); }
    void release(VirtualKey key) { keyboard.keys.release(keycode(key)); }
    void settle() {
        if (isListening)
            keyboard.settle();
    }
    std::vector<VirtualKey> reachedApplication() {
        std::vector<VirtualKey> keys;
        for (const auto& key : keyboard.window().takeKeys())
            keys.push_back(*X11KeyCodes::toVirtual(XKeycode(std::stoi(key.substr(1)))));
        return keys;
    }
    void letAnotherProgramHold(const KeyChord& chord) const {
        xcb_grab_key(other->get(), 0, other->root(), *X11KeyCodes::modifiersFromFlags(chord.modifiers),
                     static_cast<xcb_keycode_t>(keycode(chord.keyCode)), XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
        ASSERT_TRUE(other->roundTrip());
    }
    void removeKey(VirtualKey key) const { ASSERT_TRUE(X11KeyCodes::fromVirtual(key).empty()); }
    void stopListening() { isListening = false; }
    /// The main thread is here, so it does not listen; a disabled tap gives back the chord.
    void awaitTimeout() {
        while (!keyboard.canBeGrabbed(keycode(VirtualKey::Space), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1))
            std::this_thread::yield();
    }
    void listenAgain() {
        isListening = true;
        settle();
        settle();
    }
};

/// An owner of a tap that swallows a chord and passes everything else.
struct Owner {
    template <typename Session>
    explicit Owner(Session& session)
        : tap(session.taps().create([this](const KeyEvent& event) { return handle(event); })) {}

    Verdict handle(const KeyEvent& event) {
        if (event.type == KeyEventType::TapDisabledByTimeout) {
            ++timeouts;
            tap->setEnabled(enablesAgain);
            return Verdict::Pass;
        }
        const bool isWatched = event.type == KeyEventType::FlagsChanged
                                   ? event.keyCode == key
                                   : chord && event.keyCode == chord->keyCode;
        if (!isWatched) {
            if (key && isKeyHeld && isPress(event))
                ++otherKeys;
            return Verdict::Pass;
        }
        events.push_back(event);
        isKeyHeld = event.type == KeyEventType::FlagsChanged && isPress(event);
        if (event.type == KeyEventType::KeyDown && (event.flags & chord->modifiers) == chord->modifiers)
            isPressed = true;
        else if (event.type == KeyEventType::KeyUp && isPressed && !isStroke)
            isPressed = false;
        else
            return Verdict::Pass;
        return Verdict::Swallow;
    }

    WatchResult watchChord(const KeyChord& wanted) {
        chord = wanted;
        key.reset();
        return tap->watchChord(wanted);
    }
    WatchResult watchStroke(const KeyChord& wanted) {
        chord = wanted;
        key.reset();
        isStroke = true;
        return tap->watchStroke(wanted);
    }
    WatchResult watchKey(VirtualKey wanted) {
        key = wanted;
        chord.reset();
        return tap->watchKey(wanted);
    }

    std::vector<KeyEventType> types() const {
        std::vector<KeyEventType> types;
        for (const auto& event : events)
            types.push_back(event.type);
        return types;
    }
    /// Whether each event shows this flag.
    std::vector<bool> shows(std::uint64_t flag) const {
        std::vector<bool> shown;
        for (const auto& event : events)
            shown.push_back((event.flags & flag) != 0);
        return shown;
    }

    std::unique_ptr<EventTap> tap;
    std::optional<KeyChord> chord;
    std::optional<VirtualKey> key;
    std::vector<KeyEvent> events; // of what is watched
    bool isStroke = false;        // only its key down is swallowed
    bool isPressed = false;
    bool isKeyHeld = false;
    int otherKeys = 0; // struck while the key is held
    bool enablesAgain = true;
    int timeouts = 0;
};

template <typename Session>
class EventTapContract : public testing::Test {
protected:
    void TearDown() override {
        for (const auto key : std::set(held))
            release({key});
    }

    void press(std::initializer_list<VirtualKey> keys) {
        for (const auto key : keys) {
            held.insert(key);
            session.press(key);
        }
    }
    void release(std::initializer_list<VirtualKey> keys) {
        for (const auto key : keys) {
            held.erase(key);
            session.release(key);
        }
    }
    void waitForControlOptionSpace() {
        owner.tap->setEnabled(true);
        ASSERT_EQ(owner.watchChord({controlOption, VirtualKey::Space}), WatchResult::Watching);
    }

    using Keys = std::vector<VirtualKey>;

    Session session;
    Owner owner{session};
    std::set<VirtualKey> held;
};

using Sessions = testing::Types<FakeSession, RealSession>;
TYPED_TEST_SUITE(EventTapContract, Sessions);

TYPED_TEST(EventTapContract, chord_isToldOnceDownAndOnceUpAndSwallowed) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.events.at(0).flags & controlOption, controlOption);
    EXPECT_FALSE(this->owner.events.at(0).autorepeat);
    EXPECT_EQ(this->session.reachedApplication(),
              (std::vector<VirtualKey>{VirtualKey::Control, VirtualKey::Option, VirtualKey::Option,
                                       VirtualKey::Control}));
}

TYPED_TEST(EventTapContract, stroke_losesItsKeyDownAloneToTheApplication) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchStroke({controlOption, VirtualKey::Space}), WatchResult::Watching);
    for (int strokes = 1; strokes <= 2; ++strokes) {
        this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
        this->session.settle();
        EXPECT_EQ(std::ranges::count(this->owner.types(), KeyEventType::KeyDown), strokes);
        EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), VirtualKey::Space), 0);
        this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
        this->session.settle();
        EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), VirtualKey::Space), 1);
    }
}

TYPED_TEST(EventTapContract, strokeRepeatedAtOnce_isToldAgain) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchStroke({controlOption, VirtualKey::Space}), WatchResult::Watching);
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->session.settle();
    this->release({VirtualKey::Space});
    this->press({VirtualKey::Space});
    this->session.settle();
    EXPECT_EQ(std::ranges::count(this->owner.types(), KeyEventType::KeyDown), 2);
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
}

TYPED_TEST(EventTapContract, strokeOfAnotherProgram_isRefused) {
    this->session.letAnotherProgramHold({controlOption, VirtualKey::Space});
    this->owner.tap->setEnabled(true);
    EXPECT_EQ(this->owner.watchStroke({controlOption, VirtualKey::Space}), WatchResult::ChordTaken);
}

TYPED_TEST(EventTapContract, chordWithFurtherModifiers_isTheSame) {
    this->waitForControlOptionSpace();
    this->press(
        {VirtualKey::Shift, VirtualKey::Control, VirtualKey::Option, VirtualKey::Command, VirtualKey::Space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    EXPECT_EQ(this->owner.events.at(0).flags, controlOption | KeyFlag::Shift | KeyFlag::Command);
    this->release(
        {VirtualKey::Space, VirtualKey::Command, VirtualKey::Option, VirtualKey::Control, VirtualKey::Shift});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TYPED_TEST(EventTapContract, modifierLetGoFirst_changesNothing) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Control, VirtualKey::Option});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    this->release({VirtualKey::Space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.events.at(1).flags & controlOption, 0U);
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), VirtualKey::Space), 0);
}

TYPED_TEST(EventTapContract, keyWithTooFewModifiers_reachesTheApplication) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Control});
    this->press({VirtualKey::Space, VirtualKey::Control, VirtualKey::Option});
    this->release({VirtualKey::Space, VirtualKey::Control, VirtualKey::Option});
    this->session.settle();
    EXPECT_FALSE(this->owner.isPressed);
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), VirtualKey::Space), 4);
}

TYPED_TEST(EventTapContract, otherKeys_reachTheApplication) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::A});
    this->release({VirtualKey::A, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, specialKey_isToldHeldAndLetGoAndReachesTheApplication) {
    const std::vector<std::pair<VirtualKey, std::uint64_t>> keys{{VirtualKey::RightCommand, KeyFlag::Command},
                                                                 {VirtualKey::RightOption, KeyFlag::Option},
                                                                 {VirtualKey::Fn, KeyFlag::Fn}};
    this->owner.tap->setEnabled(true);
    for (const auto& [key, flag] : keys) {
        this->owner.events.clear();
        ASSERT_EQ(this->owner.watchKey(key), WatchResult::Watching);
        this->press({key});
        this->release({key});
        this->session.settle();
        EXPECT_EQ(this->owner.types(), std::vector(2, KeyEventType::FlagsChanged)) << flag;
        EXPECT_EQ(this->owner.shows(flag), (std::vector{true, false})) << flag;
        EXPECT_EQ(this->session.reachedApplication(), (std::vector{key, key}));
    }
}

TYPED_TEST(EventTapContract, otherKeyStruckWhileASpecialKeyIsHeld_isToldAndReachesTheApplication) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchKey(VirtualKey::RightCommand), WatchResult::Watching);
    int told = 0;
    for (const auto other : {VirtualKey::A, VirtualKey::Shift, VirtualKey::Left}) {
        this->press({VirtualKey::RightCommand});
        this->session.settle();
        EXPECT_EQ(this->owner.otherKeys, told);
        this->press({other});
        this->session.settle();
        EXPECT_EQ(this->owner.otherKeys, ++told);
        this->release({other, VirtualKey::RightCommand});
        this->session.settle();
        EXPECT_EQ(this->session.reachedApplication(),
                  (std::vector{VirtualKey::RightCommand, other, other, VirtualKey::RightCommand}));
    }
    EXPECT_FALSE(this->owner.tap->isBroken());
}

TYPED_TEST(EventTapContract, capsLock_isOnWithItsPressAndOffWithItsNextRelease) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchKey(VirtualKey::CapsLock), WatchResult::Watching);
    for (int i = 0; i < 2; ++i) {
        this->press({VirtualKey::CapsLock});
        this->session.settle();
        this->release({VirtualKey::CapsLock});
        this->session.settle();
    }
    EXPECT_EQ(this->owner.types(), std::vector(4, KeyEventType::FlagsChanged));
    EXPECT_EQ(this->owner.shows(KeyFlag::CapsLock), (std::vector{true, true, true, false}));
    EXPECT_EQ(this->session.reachedApplication(), std::vector(4, VirtualKey::CapsLock));
}

TYPED_TEST(EventTapContract, twinOfASpecialKey_isNotItButHoldsItsFlag) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchKey(VirtualKey::RightCommand), WatchResult::Watching);
    this->press({VirtualKey::Command});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    this->press({VirtualKey::RightCommand});
    this->release({VirtualKey::RightCommand, VirtualKey::Command});
    this->session.settle();
    EXPECT_EQ(this->owner.shows(KeyFlag::Command), (std::vector{true, true}));
}

TYPED_TEST(EventTapContract, disabledTap_tellsAndSwallowsNothing) {
    ASSERT_EQ(this->owner.watchChord({controlOption, VirtualKey::Space}), WatchResult::Watching);
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, tapThatWaitsForNothing_swallowsNothing) {
    this->waitForControlOptionSpace();
    this->owner.tap->watchNothing();
    this->owner.chord.reset();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, otherChordNamed_theFormerOneReachesTheApplication) {
    this->waitForControlOptionSpace();
    ASSERT_EQ(this->owner.watchChord({controlOption, VirtualKey::A}), WatchResult::Watching);
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space});
    this->press({VirtualKey::A});
    this->release({VirtualKey::A});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    const auto keys = this->session.reachedApplication();
    EXPECT_EQ(std::ranges::count(keys, VirtualKey::Space), 2);
    EXPECT_EQ(std::ranges::count(keys, VirtualKey::A), 0);
}

TYPED_TEST(EventTapContract, otherChordNamedDuringAPress_theRestReachesTheApplication) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->session.settle();
    ASSERT_EQ(this->owner.watchChord({controlOption, VirtualKey::A}), WatchResult::Watching);
    this->release({VirtualKey::Space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    EXPECT_EQ(this->session.reachedApplication(),
              (std::vector<VirtualKey>{VirtualKey::Control, VirtualKey::Option, VirtualKey::Space}));
}

TYPED_TEST(EventTapContract, chordOfAnotherProgram_isRefused) {
    this->session.letAnotherProgramHold({controlOption, VirtualKey::Space});
    this->owner.tap->setEnabled(true);
    EXPECT_EQ(this->owner.watchChord({controlOption, VirtualKey::Space}), WatchResult::ChordTaken);
    EXPECT_EQ(this->owner.watchChord({controlOption, VirtualKey::A}), WatchResult::Watching);
}

TYPED_TEST(EventTapContract, keyThatNoKeyboardHas_isUnavailable) {
    const VirtualKey nowhere{200};
    this->session.removeKey(nowhere);
    this->owner.tap->setEnabled(true);
    EXPECT_EQ(this->owner.watchChord({controlOption, nowhere}), WatchResult::Unavailable);
    EXPECT_EQ(this->owner.watchKey(nowhere), WatchResult::Unavailable);
}

TYPED_TEST(EventTapContract, twoTapsOnOneChord_theNewestSeesItFirst) {
    Owner newer(this->session);
    newer.tap->setEnabled(true);
    ASSERT_EQ(newer.watchChord({KeyFlag::Control, VirtualKey::Space}), WatchResult::Watching);
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_EQ(newer.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_TRUE(this->owner.events.empty());
}

TYPED_TEST(EventTapContract, mainActorThatDoesNotAnswer_losesTheKeysAndHearsOfTheTimeout) {
    this->waitForControlOptionSpace();
    this->session.stopListening();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->session.awaitTimeout();
    this->release({VirtualKey::Space});
    this->session.reachedApplication();
    this->press({VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), VirtualKey::Space), 2);
    EXPECT_EQ(this->owner.timeouts, 0);

    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    EXPECT_TRUE(this->owner.events.empty());
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.timeouts, 1);
}

TYPED_TEST(EventTapContract, pressThatEndedDuringATimeout_isToldAsEndedAfterwards) {
    this->waitForControlOptionSpace();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->session.settle();
    ASSERT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    this->session.stopListening();
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.awaitTimeout();
    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TYPED_TEST(EventTapContract, tapThatIsNotEnabledAgain_staysSilent) {
    this->waitForControlOptionSpace();
    this->owner.enablesAgain = false;
    this->session.stopListening();
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.awaitTimeout();
    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    this->press({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space});
    this->release({VirtualKey::Space, VirtualKey::Option, VirtualKey::Control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
}

} // namespace
