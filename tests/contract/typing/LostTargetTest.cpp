// SPDX-License-Identifier: MIT
//
// The keys of a text go to the window that it was meant for, and to nothing else.

#include "HeldUpWindowManager.h"
#include "Program.h"
#include "TypingTools.h"

#include "RigInput.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const QString sentence = QStringLiteral("Please send it tomorrow.");
const QString firstHalf = QStringLiteral("Please send it ");
constexpr qsizetype middle = 12; ///< in chunks, of which each has the space behind it

class LostTarget : public ::testing::Test {
protected:
    LostTarget() { setLayout("us"); }

    /// Types the text, and does something in its middle.
    PostResult typeAnd(const std::function<void()>& inTheMiddle) {
        return typeText(poster, sentence, [&](qsizetype chunk) {
            if (chunk == middle) {
                inTheMiddle();
            }
        });
    }

    /// The receiver's text is what was typed before the middle, though more could have come by now.
    void expectFirstHalf(Receiver& receiver) {
        EXPECT_TRUE(receiver.waitForText(firstHalf)) << receiver.text().toStdString();
        EXPECT_EQ(keyboardState(), "");
    }

    X11KeyEventPoster poster{X11Server()};
};

/// Moves the focus to one window and back to the other, many times between two keys.
class Flicker {
public:
    Flicker(xcb_window_t target, xcb_window_t other)
        : m_thread([this, target, other] {
            while (!m_isOver) {
                for (const xcb_window_t window : {other, target}) {
                    xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window,
                                        XCB_CURRENT_TIME);
                    m_connection->roundTrip(); // so that others have their turn in between
                }
            }
        }) {}
    ~Flicker() {
        m_isOver = true;
        m_thread.join();
    }

private:
    const std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    std::atomic<bool> m_isOver = false;
    std::thread m_thread;
};

/// On a desktop of its own: in the end the window manager has all those moves to work off.
class FlickeringFocus : public LostTarget {};

} // namespace

TEST_F(LostTarget, anotherWindowTakesTheFocus_getsNothing) {
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    std::optional<Receiver> second;
    EXPECT_EQ(typeAnd([&] { second.emplace(Receiver::Kind::Qt, QStringLiteral("second")); }),
              PostResult::TargetLost);
    expectFirstHalf(first);
    EXPECT_EQ(typeText(poster, QStringLiteral("!")), PostResult::Posted);
    EXPECT_TRUE(second->waitForText(QStringLiteral("!"))) << second->text().toStdString();
    EXPECT_EQ(first.text(), firstHalf);
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
    EXPECT_TRUE(locker.keyPresses().empty());
    expectFirstHalf(receiver);
}

TEST_F(LostTarget, lockerThatTakesTheFocus_getsNothing) {
    Receiver receiver(Receiver::Kind::Terminal);
    Program locker;
    EXPECT_EQ(typeAnd([&] { locker.focus(locker.show(Program::Kind::Unmanaged, 1280, 800)); }),
              PostResult::TargetLost);
    EXPECT_TRUE(locker.keyPresses().empty());
    expectFirstHalf(receiver);
}

TEST_F(LostTarget, programThatGrabsTheKeyboardForGood_getsNothing) {
    Receiver receiver(Receiver::Kind::Qt);
    Program launcher;
    EXPECT_EQ(typeAnd([&] { launcher.grabKeyboard(launcher.show(Program::Kind::Unmanaged, 300, 40)); }),
              PostResult::TargetLost);
    EXPECT_TRUE(launcher.keyPresses().empty());
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
    EXPECT_TRUE(passing.keyPresses().empty());
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

TEST_F(LostTarget, otherWindowOfTheSameProgram_getsNothing) {
    Program program;
    program.show(Program::Kind::Managed);
    std::size_t before = 0;
    EXPECT_EQ(typeAnd([&] {
                  program.show(Program::Kind::Managed);
                  before = program.keyPresses().size();
              }),
              PostResult::TargetLost);
    EXPECT_GT(before, 0U);
    EXPECT_EQ(program.keyPresses().size(), before);
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
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

TEST_F(LostTarget, windowThatHasJustBeenClosed_leavesTheTypingToTheNextOne) {
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    std::optional<Receiver> other(std::in_place, Receiver::Kind::Terminal);
    const HeldUpWindowManager heldUp; // and still calls the closed window the active one
    other.reset();
    EXPECT_TRUE(heldUp.awaitEndOfActiveWindow());
    program.focus(window);
    EXPECT_EQ(typeText(poster, sentence), PostResult::Posted);
    EXPECT_FALSE(program.keyPresses().empty());
}

TEST_F(LostTarget, pasteChord_isNotPressedElsewhere) {
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    const auto target = poster.focusedTarget();
    Program second;
    second.show(Program::Kind::Managed);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::TargetLost);
    EXPECT_TRUE(second.keyPresses().empty());
}

TEST_F(FlickeringFocus, noKeyGoesToTheOtherWindow) {
    Program other;
    const xcb_window_t otherWindow = other.show(Program::Kind::Managed);
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    const auto target = poster.focusedTarget();
    const HeldUpWindowManager heldUp; // as fast as it may be, it is not so fast
    const QStringList keys(300, QStringLiteral("a"));
    {
        const Flicker flicker(window, otherWindow);
        const auto session = poster.beginTyping(keys, target);
        for (qsizetype key = 0; key < keys.size(); ++key) {
            // On a busy machine the focus may be elsewhere for so long that the target counts as lost.
            while (session->post(key, KeyPhase::Down) == PostResult::TargetLost) {
            }
            session->post(key, KeyPhase::Up);
        }
    }
    EXPECT_EQ(program.keyPresses().size(), std::size_t(keys.size()));
    EXPECT_TRUE(other.keyPresses().empty()) << other.keyPresses().size() << " keys";
}
