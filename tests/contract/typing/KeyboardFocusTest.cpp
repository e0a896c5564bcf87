// SPDX-License-Identifier: MIT
//
// Where the keys go while the focus moves, when window manager and server tell different things.

#include "HeldUpWindowManager.h"
#include "Program.h"

#include "linux/x11/typing/KeyboardFocus.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>

using namespace talvera;
using namespace talvera::test;

namespace {

class KeyboardFocusTest : public ::testing::Test {
protected:
    const std::unique_ptr<X11Connection> connection = X11Server().connect();
    KeyboardFocus focus{*connection};
};

} // namespace

TEST_F(KeyboardFocusTest, closedWindowThatIsStillCalledActive_isNotTheTarget) {
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    std::optional<Receiver> other(std::in_place, Receiver::Kind::Terminal);
    const HeldUpWindowManager heldUp;
    other.reset();
    EXPECT_TRUE(heldUp.awaitEndOfActiveWindow());
    program.focus(window);
    const auto target = focus.current();
    EXPECT_EQ(target->focus, window);
    EXPECT_EQ(focus.destination(*target), KeyDestination::Target);
}

TEST_F(KeyboardFocusTest, closedWindowThatIsStillCalledActive_doesNotTakeTheTargetsKeys) {
    Program program;
    const xcb_window_t window = program.show(Program::Kind::Managed);
    const auto target = focus.current();
    std::optional<Receiver> other(std::in_place, Receiver::Kind::Terminal);
    EXPECT_EQ(focus.destination(*target), KeyDestination::Elsewhere);
    const HeldUpWindowManager heldUp;
    other.reset();
    EXPECT_TRUE(heldUp.awaitEndOfActiveWindow());
    program.focus(window);
    EXPECT_EQ(focus.destination(*target), KeyDestination::Target);
}

TEST_F(KeyboardFocusTest, focusThatTheWindowManagerTellsOfLate_isWaitedFor) {
    Program first;
    const xcb_window_t window = first.show(Program::Kind::Managed);
    Program second;
    second.show(Program::Kind::Managed);
    std::optional<HeldUpWindowManager> heldUp(std::in_place);
    first.focus(window);
    KeyboardFocus patient(*connection, std::chrono::seconds(30));
    auto target = std::async(std::launch::async, [&] { return patient.current(); });
    heldUp.reset();
    EXPECT_EQ(target.get()->active, window);
}

TEST_F(KeyboardFocusTest, activeWindowWithoutTheFocus_isTheTargetAndTheKeysGoElsewhere) {
    const Receiver receiver(Receiver::Kind::Terminal);
    const xcb_window_t active = focus.current()->active;
    const HeldUpWindowManager heldUp;
    Program launcher;
    launcher.focus(launcher.show(Program::Kind::Unmanaged, 300, 40));
    const auto target = focus.current();
    EXPECT_EQ(target->focus, active);
    EXPECT_EQ(focus.destination(*target), KeyDestination::Elsewhere);
}

TEST_F(KeyboardFocusTest, focusOfTheWindowManagersOwn_isNobodys) {
    Program program;
    program.show(Program::Kind::Managed);
    const auto target = focus.current();
    const HeldUpWindowManager heldUp;
    program.focus(heldUp.window());
    EXPECT_EQ(focus.destination(*target), KeyDestination::Nobody);
}

TEST_F(KeyboardFocusTest, windowThatAnotherProgramHasTakenIn_isTheTarget) {
    Program tabs;
    const xcb_window_t whole = tabs.show(Program::Kind::Managed);
    Program page;
    const xcb_window_t window = page.show(Program::Kind::Unmanaged);
    page.moveInto(whole, window);
    page.focus(window);
    const auto target = focus.current();
    EXPECT_EQ(target->focus, window);
    EXPECT_EQ(focus.destination(*target), KeyDestination::Target);
}
