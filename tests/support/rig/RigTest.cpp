// SPDX-License-Identifier: MIT
// The virtual desktop's own promises, on which every test that runs in it relies.
#include "RigInput.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

// Last, since it defines words such as None and Bool.
#include <X11/Xlib.h>

namespace talvera::test {
namespace {

constexpr int keyA = 38;
constexpr int keyShift = 50;

class Rig : public testing::Test {
protected:
    bool isDown(int keycode) {
        char keys[32];
        XQueryKeymap(display.get(), keys);
        return (keys[keycode / 8] & (1 << (keycode % 8))) != 0;
    }

    std::pair<int, int> pointer() {
        Window root = 0;
        Window child = 0;
        int x = 0;
        int y = 0;
        int windowX = 0;
        int windowY = 0;
        unsigned mask = 0;
        XQueryPointer(display.get(), DefaultRootWindow(display.get()), &root, &child, &x, &y, &windowX,
                      &windowY, &mask);
        return {x, y};
    }

    std::unique_ptr<Display, int (*)(Display*)> display{XOpenDisplay(nullptr), XCloseDisplay};
    RigInput input;
};

TEST_F(Rig, pressAndRelease_keyIsDownInBetween) {
    EXPECT_FALSE(isDown(keyA));
    input.press(keyA);
    EXPECT_TRUE(isDown(keyA));
    input.release(keyA);
    EXPECT_FALSE(isDown(keyA));
}

TEST_F(Rig, secondKeyboard_pressesItsOwnKeys) {
    input.press(keyShift, 1);
    input.tap(keyA, 0);
    EXPECT_TRUE(isDown(keyShift));
    input.release(keyShift, 1);
    EXPECT_FALSE(isDown(keyShift));
}

TEST_F(Rig, keycodeThatNoKeyboardHas_throws) {
    EXPECT_THROW(input.press(7), std::runtime_error);
    EXPECT_THROW(input.press(keyA, 2), std::runtime_error);
}

TEST_F(Rig, pointer_goesWhereItIsSent) {
    input.pointAt(300, 200);
    EXPECT_EQ(pointer(), std::pair(300, 200));
    input.movePointer(10, -5);
    EXPECT_EQ(pointer(), std::pair(310, 195));
}

} // namespace
} // namespace talvera::test
