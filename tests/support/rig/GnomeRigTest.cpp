// SPDX-License-Identifier: MIT
// What tests rely on in a virtual desktop with GNOME Shell.
#include "Peer.h"
#include "RigInput.h"
#include "keys.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace talvera::test {
namespace {

TEST(GnomeRig, keys_reachTheProgramThatHasTheFocus) {
    Peer window("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Keys"});
    ASSERT_EQ(window.readUntil("f"), "ocus");
    RigInput input;
    input.tap(Key::a);
    EXPECT_EQ(window.readUntil("+"), "38");
    EXPECT_EQ(window.readUntil("-"), "38");
    input.press(Key::leftShift, 1);
    input.tap(Key::space, 0);
    input.release(Key::leftShift, 1);
    EXPECT_EQ(window.readUntil("+"), "50");
    EXPECT_EQ(window.readUntil("+"), "65");
    EXPECT_EQ(window.readUntil("-"), "65");
    EXPECT_EQ(window.readUntil("-"), "50");
}

TEST(GnomeRig, windowThatComesLater_hasTheFocus) {
    Peer first("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "First"});
    ASSERT_EQ(first.readUntil("f"), "ocus");
    Peer second("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Second"});
    EXPECT_EQ(second.readUntil("f"), "ocus");
}

TEST(GnomeRig, keycodeThatNoKeyboardHas_throws) {
    RigInput input;
    EXPECT_THROW(input.press(XKeycode{7}), std::runtime_error);
}

} // namespace
} // namespace talvera::test
