// SPDX-License-Identifier: MIT
//
// The keys of a text go to the window that it was meant for, and to nothing else.

#include "TypingTools.h"

#include "RigInput.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const QString Text = QStringLiteral("Please send it tomorrow.");
const QString FirstHalf = QStringLiteral("Please send it ");
constexpr qsizetype Middle = 12; ///< in chunks, of which each has the space behind it

/// A program with windows of its own, which counts the keys that it gets.
class Program {
public:
    enum class Kind { Managed, Unmanaged };

    /// Returns when the window is shown, and has the focus if it is one for the window manager.
    xcb_window_t show(Kind kind, int width = 400, int height = 300) {
        xcb_connection_t* x = m_connection->get();
        const xcb_window_t window = xcb_generate_id(x);
        const std::uint32_t values[] = {kind == Kind::Unmanaged ? 1U : 0U,
                                        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(x, XCB_COPY_FROM_PARENT, window, m_connection->root(), 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(x, window);
        const bool shown = waitUntil([&] {
            const auto attributes =
                m_connection->reply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes(x, window));
            return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                   (kind == Kind::Unmanaged || focusedWindow(*m_connection) == window);
        });
        EXPECT_TRUE(shown);
        return window;
    }

    void focus(xcb_window_t window) {
        xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    void grabKeyboard(xcb_window_t window) {
        const auto grab = m_connection->reply<xcb_grab_keyboard_reply_t>(xcb_grab_keyboard(
            m_connection->get(), 1, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        EXPECT_TRUE(grab && grab->status == XCB_GRAB_STATUS_SUCCESS);
    }

    void ungrabKeyboard() {
        xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    void close(xcb_window_t window) {
        xcb_destroy_window(m_connection->get(), window);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    /// How many keys have been pressed in its windows by now.
    int keyPresses() {
        m_connection->roundTrip();
        while (const XcbEvent event = m_connection->pollEvent()) {
            m_keyPresses += (event->response_type & 0x7f) == XCB_KEY_PRESS ? 1 : 0;
        }
        return m_keyPresses;
    }

private:
    template <typename Condition>
    static bool waitUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + seconds(20);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(milliseconds(2));
        }
        return true;
    }

    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    int m_keyPresses = 0;
};

class LostTarget : public ::testing::Test {
protected:
    LostTarget() { setLayout("us"); }

    /// Types the text, and does something in its middle.
    PostResult typeAnd(const std::function<void()>& inTheMiddle) {
        return typeText(poster, Text, [&](qsizetype chunk) {
            if (chunk == Middle) {
                inTheMiddle();
            }
        });
    }

    /// The receiver's text is what was typed before the middle, though more could have come by now.
    void expectFirstHalf(Receiver& receiver) {
        EXPECT_TRUE(receiver.waitForText(FirstHalf)) << receiver.text().toStdString();
        EXPECT_EQ(keyboardState(), "");
    }

    X11KeyEventPoster poster;
};

} // namespace

TEST_F(LostTarget, anotherWindowTakesTheFocus_getsNothing) {
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    std::optional<Receiver> second;
    EXPECT_EQ(typeAnd([&] { second.emplace(Receiver::Kind::Qt, QStringLiteral("second")); }),
              PostResult::TargetLost);
    expectFirstHalf(first);
    EXPECT_EQ(typeText(poster, QStringLiteral("!")), PostResult::Posted);
    EXPECT_TRUE(second->waitForText(QStringLiteral("!"))) << second->text().toStdString();
    EXPECT_EQ(first.text(), FirstHalf);
}

TEST_F(LostTarget, targetClosed_nextWindowGetsNothing) {
    Receiver below(Receiver::Kind::Terminal, QStringLiteral("below"));
    std::optional<Receiver> target(std::in_place, Receiver::Kind::Gtk, QStringLiteral("target"));
    EXPECT_EQ(typeAnd([&] { target.reset(); }), PostResult::TargetLost);
    EXPECT_EQ(below.text(), "");
    EXPECT_EQ(keyboardState(), "");
}

TEST_F(LostTarget, lockerThatGrabsTheKeyboard_getsNothing) {
    Receiver receiver(Receiver::Kind::Gtk);
    Program locker;
    EXPECT_EQ(typeAnd([&] { locker.grabKeyboard(locker.show(Program::Kind::Unmanaged, 1280, 800)); }),
              PostResult::TargetLost);
    EXPECT_EQ(locker.keyPresses(), 0);
    expectFirstHalf(receiver);
}

TEST_F(LostTarget, lockerThatTakesTheFocus_getsNothing) {
    Receiver receiver(Receiver::Kind::Terminal);
    Program locker;
    EXPECT_EQ(typeAnd([&] { locker.focus(locker.show(Program::Kind::Unmanaged, 1280, 800)); }),
              PostResult::TargetLost);
    EXPECT_EQ(locker.keyPresses(), 0);
    expectFirstHalf(receiver);
}

TEST_F(LostTarget, programThatGrabsTheKeyboardForGood_getsNothing) {
    Receiver receiver(Receiver::Kind::Qt);
    Program launcher;
    EXPECT_EQ(typeAnd([&] { launcher.grabKeyboard(launcher.show(Program::Kind::Unmanaged, 300, 40)); }),
              PostResult::TargetLost);
    EXPECT_EQ(launcher.keyPresses(), 0);
    expectFirstHalf(receiver);
}

TEST_F(LostTarget, keyboardGrabbedForAMoment_isWaitedFor) {
    Receiver receiver(Receiver::Kind::Qt);
    Program passing;
    std::thread release;
    EXPECT_EQ(typeAnd([&] {
                  const xcb_window_t window = passing.show(Program::Kind::Unmanaged, 300, 40);
                  passing.grabKeyboard(window);
                  release = std::thread([&] {
                      std::this_thread::sleep_for(milliseconds(500));
                      passing.ungrabKeyboard();
                  });
              }),
              PostResult::Posted);
    release.join();
    EXPECT_EQ(passing.keyPresses(), 0);
    EXPECT_TRUE(receiver.waitForText(Text)) << receiver.text().toStdString();
}

TEST_F(LostTarget, otherWindowOfTheSameProgram_getsNothing) {
    Program program;
    program.show(Program::Kind::Managed);
    int before = 0;
    EXPECT_EQ(typeAnd([&] {
                  program.show(Program::Kind::Managed);
                  before = program.keyPresses();
              }),
              PostResult::TargetLost);
    EXPECT_GT(before, 0);
    EXPECT_EQ(program.keyPresses(), before);
}

TEST_F(LostTarget, popUpOfTheSameProgram_doesNotStopTheTyping) {
    Program program;
    program.show(Program::Kind::Managed);
    EXPECT_EQ(typeAnd([&] { program.grabKeyboard(program.show(Program::Kind::Unmanaged, 120, 200)); }),
              PostResult::Posted);
    EXPECT_EQ(typeAnd([&] { program.ungrabKeyboard(); }), PostResult::Posted);
}

TEST_F(LostTarget, popUpOfTheSameProgramWithTheFocus_doesNotStopTheTyping) {
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    xcb_window_t list = XCB_NONE;
    EXPECT_EQ(typeAnd([&] {
                  list = program.show(Program::Kind::Unmanaged, 120, 200);
                  program.focus(list);
              }),
              PostResult::Posted);
    EXPECT_EQ(typeAnd([&] {
                  program.focus(window);
                  program.close(list);
              }),
              PostResult::Posted);
}

TEST_F(LostTarget, notificationOfAnotherProgram_doesNotStopTheTyping) {
    Receiver receiver(Receiver::Kind::Qt);
    Program notification;
    EXPECT_EQ(typeAnd([&] { notification.show(Program::Kind::Unmanaged, 300, 80); }), PostResult::Posted);
    EXPECT_TRUE(receiver.waitForText(Text)) << receiver.text().toStdString();
}

TEST_F(LostTarget, pasteChord_isNotPressedElsewhere) {
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    const auto target = poster.focusedTarget();
    Program second;
    second.show(Program::Kind::Managed);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::TargetLost);
    EXPECT_EQ(second.keyPresses(), 0);
}
