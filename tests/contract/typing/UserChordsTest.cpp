// SPDX-License-Identifier: MIT
//
// What the user does with the keyboard while a text is typed is theirs: a chord is never torn, and no key of
// ours falls into it.

#include "Program.h"
#include "TypingAgent.h"
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/server/X11InputDevices.h"
#include "linux/x11/server/XcbXkb.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "linux/x11/typing/X11Keyboard.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <xcb/xinput.h>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const QString sentence = QStringLiteral("A sentence that takes a while to type.");
constexpr qsizetype middle = 10;

/// Fingers that press and let go at the pace of fingers, while a text is typed.
class UserChord : public ::testing::Test {
protected:
    UserChord() { setLayout("us"); }
    /// Types the text; in its middle the keys go down one after another, and up in the other order.
    PostResult typeWhilePressing(const std::vector<XKeycode>& chord, milliseconds hold = milliseconds(100)) {
        std::thread fingers;
        const auto result = typeText(poster, sentence, [&](qsizetype chunk) {
            if (chunk == middle) {
                fingers = std::thread([this, chord, hold] {
                    std::this_thread::sleep_for(milliseconds(12)); // between two of our keys
                    for (const auto key : chord) {
                        keys.press(key);
                        std::this_thread::sleep_for(milliseconds(60));
                    }
                    std::this_thread::sleep_for(hold);
                    for (auto key = chord.rbegin(); key != chord.rend(); ++key) {
                        keys.release(*key);
                    }
                });
            }
        });
        if (fingers.joinable()) {
            fingers.join();
        }
        EXPECT_EQ(keyboardState(), "");
        return result;
    }

    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
};

/// Switches Slow Keys or Bounce Keys on for all keyboards, and off in the end.
class KeyFilter {
public:
    explicit KeyFilter(std::uint32_t control)
        : m_control(control) {
        set(control);
    }
    ~KeyFilter() { set(0); }
    void switchOn() { set(m_control); }
    KeyFilter(const KeyFilter&) = delete;
    KeyFilter& operator=(const KeyFilter&) = delete;

    bool isOnForTheUsersKeyboards() {
        const auto keyboard = X11Keyboard::open(*m_connection);
        X11InputDevices devices;
        devices.load(*m_connection);
        return keyboard && std::ranges::all_of(devices.all(), [&](const X11InputDevice& device) {
                   if (device.use != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD || device.isPosted)
                       return true;
                   const auto controls = m_connection->reply<xcb_xkb_get_controls_reply_t>(
                       xcb_xkb_get_controls(m_connection->get(), device.id));
                   return controls && (controls->enabledControls & m_control) != 0;
               });
    }

    /// On the device that posted keys come from.
    bool isOnForPostedKeys() {
        const auto keyboard = X11Keyboard::open(*m_connection);
        return keyboard && (keyboard->typingFilters() & m_control) != 0;
    }

private:
    void set(std::uint32_t controls) {
        const auto keyboard = X11Keyboard::open(*m_connection); // makes the extension known
        ASSERT_TRUE(keyboard);
        const std::uint8_t noKeyRepeats[32] = {};
        xcb_xkb_set_controls(m_connection->get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             m_control, controls, XCB_XKB_CONTROL_CONTROLS_ENABLED, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             0, 0, 0, 0, 0, noKeyRepeats);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    std::uint32_t m_control;
};

void expectTypedAndPasted(std::uint32_t control, Receiver::Kind kind) {
    setLayout("us");
    Receiver receiver(kind);
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    KeyFilter filter(control);
    ASSERT_TRUE(filter.isOnForPostedKeys());
    const QString text = QStringLiteral("Hello all, book and Wörld: жжж");
    {
        X11KeyEventPoster poster{X11Server()};
        EXPECT_EQ(typeText(poster, text), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
        EXPECT_TRUE(filter.isOnForPostedKeys());
        pasteText(poster, pasteboard, text);
        EXPECT_TRUE(receiver.waitForText(text + text)) << receiver.text().toStdString();
    }
    EXPECT_TRUE(filter.isOnForPostedKeys());
}

} // namespace

TEST_F(UserChord, hotkeyChord_isHeardAndStaysOutOfTheText) {
    Receiver receiver(Receiver::Kind::Qt);
    Program other;
    other.grabChord(Key::space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    EXPECT_EQ(typeWhilePressing({Key::leftControl, Key::leftAlt, Key::space}), PostResult::Posted);
    EXPECT_EQ(other.keyPresses(),
              (std::vector<Program::KeyPress>{{Key::space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1}}));
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

TEST_F(UserChord, hotkeyWithoutModifiersHeldForLong_textComesAllTheSame) {
    Receiver receiver(Receiver::Kind::Gtk);
    Program other;
    other.grabChord(Key::f8, 0);
    EXPECT_EQ(typeWhilePressing({Key::f8}, seconds(4)), PostResult::Posted);
    for (const auto& press : other.keyPresses()) { // with its repeats
        EXPECT_EQ(press, (Program::KeyPress{Key::f8, 0}));
    }
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

TEST_F(UserChord, shortcutOfTheApplication_arrivesAsSuch) {
    Program program;
    program.show(Program::Kind::Managed);
    EXPECT_EQ(typeWhilePressing({Key::leftControl, Key::s}), PostResult::Posted);
    const auto presses = program.keyPresses();
    EXPECT_EQ(std::ranges::count(presses, Program::KeyPress{Key::s, XCB_MOD_MASK_CONTROL}), 1);
    EXPECT_EQ(std::ranges::count_if(presses,
                                    [](const Program::KeyPress& press) {
                                        return press.key != Key::s &&
                                               (press.modifiers & XCB_MOD_MASK_CONTROL) != 0;
                                    }),
              0);
}

TEST_F(UserChord, altTab_movesTheFocusAndStopsTheTyping) {
    Receiver second(Receiver::Kind::Qt, QStringLiteral("second"));
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    EXPECT_EQ(typeWhilePressing({Key::leftAlt, Key::tab}), PostResult::TargetLost);
    EXPECT_TRUE(
        first.waitFor([](const QString& text) { return !text.isEmpty() && sentence.startsWith(text); }));
    typeAnywhere(poster, QStringLiteral("."));
    EXPECT_TRUE(second.waitForText(QStringLiteral("."))) << second.text().toStdString();
}

TEST_F(UserChord, modifierHeldForLong_isLetGoAfterAWhile) {
    Receiver receiver(Receiver::Kind::Terminal);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(typeWhilePressing({Key::leftControl}, seconds(5)), PostResult::Posted);
    EXPECT_GT(std::chrono::steady_clock::now() - start, seconds(2));
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

/// The server takes in the user's keys between any two requests, so that some microseconds remain.
TEST_F(UserChord, modifierThatGoesDownInTheVeryMoment_meetsHardlyAnyKeyOfOurs) {
    Program program;
    program.show(Program::Kind::Managed);
    const QStringList letters(2000, QStringLiteral("a"));
    std::atomic<bool> isOver = false;
    int strokes = 0;
    std::thread finger([&] {
        for (; !isOver; ++strokes) {
            keys.tap(Key::leftControl);
            std::this_thread::sleep_for(std::chrono::microseconds(500 + strokes * 37 % 1000));
        }
    });
    {
        const auto session = poster.beginTyping(letters, poster.focusedTarget());
        for (qsizetype index = 0; index < letters.size(); ++index) {
            EXPECT_EQ(session->post(index, KeyPhase::Down), PostResult::Posted);
            EXPECT_EQ(session->post(index, KeyPhase::Up), PostResult::Posted);
        }
    }
    isOver = true;
    finger.join();
    const auto presses = program.keyPresses();
    const auto met = std::ranges::count_if(presses, [](const Program::KeyPress& press) {
        return press.key != Key::leftControl && (press.modifiers & XCB_MOD_MASK_CONTROL) != 0;
    });
    EXPECT_LE(met * 200, strokes);
    EXPECT_EQ(keyboardState(), "");
}

TEST_F(UserChord, focusThatIsNobodysAfterALongChord_isWaitedFor) {
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    std::thread fingers;
    EXPECT_EQ(typeText(poster, sentence,
                       [&](qsizetype chunk) {
                           if (chunk == middle) {
                               keys.press(Key::leftControl);
                               fingers = std::thread([&] {
                                   std::this_thread::sleep_for(milliseconds(1200));
                                   program.focus(XCB_NONE);
                                   keys.release(Key::leftControl);
                                   std::this_thread::sleep_for(milliseconds(30));
                                   program.focus(window);
                               });
                           }
                       }),
              PostResult::Posted);
    fingers.join();
}

TEST(SlowKeys, gtk_getsAllThatIsTypedAndPasted) {
    expectTypedAndPasted(XCB_XKB_BOOL_CTRL_SLOW_KEYS, Receiver::Kind::Gtk);
}
TEST(SlowKeys, qt_getsAllThatIsTypedAndPasted) {
    expectTypedAndPasted(XCB_XKB_BOOL_CTRL_SLOW_KEYS, Receiver::Kind::Qt);
}
TEST(BounceKeys, gtk_getsAllThatIsTypedAndPasted) {
    expectTypedAndPasted(XCB_XKB_BOOL_CTRL_BOUNCE_KEYS, Receiver::Kind::Gtk);
}
TEST(BounceKeys, terminal_getsAllThatIsTypedAndPasted) {
    expectTypedAndPasted(XCB_XKB_BOOL_CTRL_BOUNCE_KEYS, Receiver::Kind::Terminal);
}

TEST(SlowKeys, whileATextIsTyped_stayOnForTheUsersOwnKeyboards) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    KeyFilter filter(XCB_XKB_BOOL_CTRL_SLOW_KEYS);
    X11KeyEventPoster poster{X11Server()};
    const auto session = poster.beginTyping({QStringLiteral("a")}, nullptr);
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    EXPECT_FALSE(filter.isOnForPostedKeys());
    EXPECT_TRUE(filter.isOnForTheUsersKeyboards());
}

TEST(SlowKeys, switchedOnAgainWhileATextIsTyped_swallowNothing) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    KeyFilter filter(XCB_XKB_BOOL_CTRL_SLOW_KEYS);
    const QString text = QStringLiteral("Hello all");
    {
        X11KeyEventPoster poster{X11Server()};
        const auto again = [&](qsizetype chunk) {
            if (chunk % 3 == 2) {
                filter.switchOn();
                EXPECT_TRUE(filter.isOnForPostedKeys());
            }
        };
        EXPECT_EQ(typeText(poster, text, again), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
    }
    EXPECT_TRUE(filter.isOnForPostedKeys());
    EXPECT_TRUE(filter.isOnForTheUsersKeyboards());
}

TEST(SlowKeys, agentKilledWhileTyping_areBackForPostedKeys) {
    setLayout("us");
    KeyFilter filter(XCB_XKB_BOOL_CTRL_SLOW_KEYS);
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin abc");
    agent.tell("down 0");
    ASSERT_FALSE(filter.isOnForPostedKeys());
    agent.kill();
    ASSERT_TRUE(awaitEnd(companion));
    EXPECT_TRUE(filter.isOnForPostedKeys());
}
