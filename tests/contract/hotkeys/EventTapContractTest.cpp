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

namespace Code {
constexpr std::uint16_t a = 0;
constexpr std::uint16_t space = 49;
constexpr std::uint16_t rightCommand = 54;
constexpr std::uint16_t leftCommand = 55;
constexpr std::uint16_t shift = 56;
constexpr std::uint16_t capsLock = 57;
constexpr std::uint16_t option = 58;
constexpr std::uint16_t control = 59;
constexpr std::uint16_t rightOption = 61;
constexpr std::uint16_t fn = 63;
} // namespace Code

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;

/// A session with keyboards, an application and taps. Keys are named by their virtual codes; what reaches the
/// application by the codes in order, each press and each release one entry.
struct FakeSession {
    test::FakeKeyboard keyboard;
    std::size_t taken = 0;

    EventTapFactory& taps() { return keyboard; }
    void press(std::uint16_t key) { keyboard.press(key); }
    void release(std::uint16_t key) { keyboard.release(key); }
    void settle() {}
    std::vector<std::uint16_t> reachedApplication() {
        std::vector<std::uint16_t> keys;
        for (; taken < keyboard.passed().size(); ++taken)
            keys.push_back(keyboard.passed()[taken].keyCode);
        return keys;
    }
    void letAnotherProgramHold(const KeyChord& chord) { keyboard.takenChords.push_back(chord); }
    void removeKey(std::uint16_t key) { keyboard.missingKeys.insert(key); }
    void stopListening() { keyboard.stopListening(); }
    void awaitTimeout() {}
    void listenAgain() { keyboard.listenAgain(); }
};

struct RealSession {
    static constexpr auto bound = std::chrono::milliseconds(50);

    test::RealKeyboard keyboard{bound};
    std::unique_ptr<X11Connection> other = X11Connection::open();
    bool isListening = true;

    static std::uint8_t keycode(std::uint16_t key) { return X11KeyCodes::fromVirtual(key).front(); }

    EventTapFactory& taps() { return keyboard.taps(); }
    void press(std::uint16_t key) { keyboard.keys.press(keycode(key)); }
    void release(std::uint16_t key) { keyboard.keys.release(keycode(key)); }
    void settle() {
        if (isListening)
            keyboard.settle();
    }
    std::vector<std::uint16_t> reachedApplication() {
        std::vector<std::uint16_t> keys;
        for (const auto& key : keyboard.window().takeKeys())
            keys.push_back(*X11KeyCodes::toVirtual(static_cast<std::uint8_t>(std::stoi(key.substr(1)))));
        return keys;
    }
    void letAnotherProgramHold(const KeyChord& chord) const {
        xcb_grab_key(other->get(), 0, other->root(), *X11KeyCodes::modifiersFromFlags(chord.modifiers),
                     keycode(chord.keyCode), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        ASSERT_TRUE(other->roundTrip());
    }
    void removeKey(std::uint16_t key) const { ASSERT_TRUE(X11KeyCodes::fromVirtual(key).empty()); }
    void stopListening() { isListening = false; }
    /// The main thread is here, so it does not listen; a disabled tap gives back the chord.
    void awaitTimeout() {
        while (!keyboard.canBeGrabbed(keycode(Code::space), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1))
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
        if (!isWatched)
            return Verdict::Pass;
        events.push_back(event);
        if (event.type == KeyEventType::KeyDown && (event.flags & chord->modifiers) == chord->modifiers)
            isPressed = true;
        else if (event.type == KeyEventType::KeyUp && isPressed)
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
    WatchResult watchKey(std::uint16_t wanted) {
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
    std::optional<std::uint16_t> key;
    std::vector<KeyEvent> events; // of what is watched
    bool isPressed = false;
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

    void press(std::initializer_list<std::uint16_t> keys) {
        for (const auto key : keys) {
            held.insert(key);
            session.press(key);
        }
    }
    void release(std::initializer_list<std::uint16_t> keys) {
        for (const auto key : keys) {
            held.erase(key);
            session.release(key);
        }
    }
    void waitForControlOptionSpace() {
        owner.tap->setEnabled(true);
        ASSERT_EQ(owner.watchChord({controlOption, Code::space}), WatchResult::Watching);
    }

    using Keys = std::vector<std::uint16_t>;

    Session session;
    Owner owner{session};
    std::set<std::uint16_t> held;
};

using Sessions = testing::Types<FakeSession, RealSession>;
TYPED_TEST_SUITE(EventTapContract, Sessions);

TYPED_TEST(EventTapContract, chord_isToldOnceDownAndOnceUpAndSwallowed) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.events.at(0).flags & controlOption, controlOption);
    EXPECT_FALSE(this->owner.events.at(0).autorepeat);
    EXPECT_EQ(this->session.reachedApplication(),
              (std::vector<std::uint16_t>{Code::control, Code::option, Code::option, Code::control}));
}

TYPED_TEST(EventTapContract, chordWithFurtherModifiers_isTheSame) {
    this->waitForControlOptionSpace();
    this->press({Code::shift, Code::control, Code::option, Code::leftCommand, Code::space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    EXPECT_EQ(this->owner.events.at(0).flags, controlOption | KeyFlag::Shift | KeyFlag::Command);
    this->release({Code::space, Code::leftCommand, Code::option, Code::control, Code::shift});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TYPED_TEST(EventTapContract, modifierLetGoFirst_changesNothing) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::control, Code::option});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    this->release({Code::space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.events.at(1).flags & controlOption, 0U);
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), Code::space), 0);
}

TYPED_TEST(EventTapContract, keyWithTooFewModifiers_reachesTheApplication) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::space});
    this->release({Code::space, Code::control});
    this->press({Code::space, Code::control, Code::option});
    this->release({Code::space, Code::control, Code::option});
    this->session.settle();
    EXPECT_FALSE(this->owner.isPressed);
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), Code::space), 4);
}

TYPED_TEST(EventTapContract, otherKeys_reachTheApplication) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::a});
    this->release({Code::a, Code::option, Code::control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, specialKey_isToldHeldAndLetGoAndReachesTheApplication) {
    const std::vector<std::pair<std::uint16_t, std::uint64_t>> keys{{Code::rightCommand, KeyFlag::Command},
                                                                    {Code::rightOption, KeyFlag::Option},
                                                                    {Code::fn, KeyFlag::Fn}};
    this->owner.tap->setEnabled(true);
    for (const auto& [key, flag] : keys) {
        this->owner.events.clear();
        ASSERT_EQ(this->owner.watchKey(key), WatchResult::Watching);
        this->press({key});
        this->release({key});
        this->session.settle();
        EXPECT_EQ(this->owner.types(), std::vector(2, KeyEventType::FlagsChanged)) << key;
        EXPECT_EQ(this->owner.shows(flag), (std::vector{true, false})) << key;
        EXPECT_EQ(this->session.reachedApplication(), (std::vector{key, key}));
    }
}

TYPED_TEST(EventTapContract, capsLock_isOnWithItsPressAndOffWithItsNextRelease) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchKey(Code::capsLock), WatchResult::Watching);
    for (int i = 0; i < 2; ++i) {
        this->press({Code::capsLock});
        this->session.settle();
        this->release({Code::capsLock});
        this->session.settle();
    }
    EXPECT_EQ(this->owner.types(), std::vector(4, KeyEventType::FlagsChanged));
    EXPECT_EQ(this->owner.shows(KeyFlag::CapsLock), (std::vector{true, true, true, false}));
    EXPECT_EQ(this->session.reachedApplication(), std::vector(4, Code::capsLock));
}

TYPED_TEST(EventTapContract, twinOfASpecialKey_isNotItButHoldsItsFlag) {
    this->owner.tap->setEnabled(true);
    ASSERT_EQ(this->owner.watchKey(Code::rightCommand), WatchResult::Watching);
    this->press({Code::leftCommand});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    this->press({Code::rightCommand});
    this->release({Code::rightCommand, Code::leftCommand});
    this->session.settle();
    EXPECT_EQ(this->owner.shows(KeyFlag::Command), (std::vector{true, true}));
}

TYPED_TEST(EventTapContract, disabledTap_tellsAndSwallowsNothing) {
    ASSERT_EQ(this->owner.watchChord({controlOption, Code::space}), WatchResult::Watching);
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, tapThatWaitsForNothing_swallowsNothing) {
    this->waitForControlOptionSpace();
    this->owner.tap->watchNothing();
    this->owner.chord.reset();
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_EQ(this->session.reachedApplication().size(), 6U);
}

TYPED_TEST(EventTapContract, otherChordNamed_theFormerOneReachesTheApplication) {
    this->waitForControlOptionSpace();
    ASSERT_EQ(this->owner.watchChord({controlOption, Code::a}), WatchResult::Watching);
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space});
    this->press({Code::a});
    this->release({Code::a});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    const auto keys = this->session.reachedApplication();
    EXPECT_EQ(std::ranges::count(keys, Code::space), 2);
    EXPECT_EQ(std::ranges::count(keys, Code::a), 0);
}

TYPED_TEST(EventTapContract, otherChordNamedDuringAPress_theRestReachesTheApplication) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::space});
    this->session.settle();
    ASSERT_EQ(this->owner.watchChord({controlOption, Code::a}), WatchResult::Watching);
    this->release({Code::space});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    EXPECT_EQ(this->session.reachedApplication(),
              (std::vector<std::uint16_t>{Code::control, Code::option, Code::space}));
}

TYPED_TEST(EventTapContract, chordOfAnotherProgram_isRefused) {
    this->session.letAnotherProgramHold({controlOption, Code::space});
    this->owner.tap->setEnabled(true);
    EXPECT_EQ(this->owner.watchChord({controlOption, Code::space}), WatchResult::ChordTaken);
    EXPECT_EQ(this->owner.watchChord({controlOption, Code::a}), WatchResult::Watching);
}

TYPED_TEST(EventTapContract, keyThatNoKeyboardHas_isUnavailable) {
    this->session.removeKey(200);
    this->owner.tap->setEnabled(true);
    EXPECT_EQ(this->owner.watchChord({controlOption, 200}), WatchResult::Unavailable);
    EXPECT_EQ(this->owner.watchKey(200), WatchResult::Unavailable);
}

TYPED_TEST(EventTapContract, twoTapsOnOneChord_theNewestSeesItFirst) {
    Owner newer(this->session);
    newer.tap->setEnabled(true);
    ASSERT_EQ(newer.watchChord({KeyFlag::Control, Code::space}), WatchResult::Watching);
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_EQ(newer.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_TRUE(this->owner.events.empty());
}

TYPED_TEST(EventTapContract, mainActorThatDoesNotAnswer_losesTheKeysAndHearsOfTheTimeout) {
    this->waitForControlOptionSpace();
    this->session.stopListening();
    this->press({Code::control, Code::option, Code::space});
    this->session.awaitTimeout();
    this->release({Code::space});
    this->session.reachedApplication();
    this->press({Code::space});
    this->release({Code::space, Code::option, Code::control});
    EXPECT_EQ(std::ranges::count(this->session.reachedApplication(), Code::space), 2);
    EXPECT_EQ(this->owner.timeouts, 0);

    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    EXPECT_TRUE(this->owner.events.empty());
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(this->owner.timeouts, 1);
}

TYPED_TEST(EventTapContract, pressThatEndedDuringATimeout_isToldAsEndedAfterwards) {
    this->waitForControlOptionSpace();
    this->press({Code::control, Code::option, Code::space});
    this->session.settle();
    ASSERT_EQ(this->owner.types(), std::vector{KeyEventType::KeyDown});
    this->session.stopListening();
    this->release({Code::space, Code::option, Code::control});
    this->session.awaitTimeout();
    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    EXPECT_EQ(this->owner.types(), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TYPED_TEST(EventTapContract, tapThatIsNotEnabledAgain_staysSilent) {
    this->waitForControlOptionSpace();
    this->owner.enablesAgain = false;
    this->session.stopListening();
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.awaitTimeout();
    this->session.listenAgain();
    EXPECT_EQ(this->owner.timeouts, 1);
    this->press({Code::control, Code::option, Code::space});
    this->release({Code::space, Code::option, Code::control});
    this->session.settle();
    EXPECT_TRUE(this->owner.events.empty());
}

} // namespace
