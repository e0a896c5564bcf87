// SPDX-License-Identifier: MIT
// The virtual desktop's own promises, on which every test that runs in it relies.
#include "RigInput.h"
#include "keys.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

// Last, since it defines words such as None and Bool.
#include <X11/Xlib.h>

namespace talvera::test {
namespace {

class Rig : public testing::Test {
protected:
    bool isDown(XKeycode key) {
        char keys[32];
        XQueryKeymap(display.get(), keys);
        return (keys[indexOf(key) / 8] & (1 << (indexOf(key) % 8))) != 0;
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
    EXPECT_FALSE(isDown(Key::a));
    input.press(Key::a);
    EXPECT_TRUE(isDown(Key::a));
    input.release(Key::a);
    EXPECT_FALSE(isDown(Key::a));
}

TEST_F(Rig, secondKeyboard_pressesItsOwnKeys) {
    input.press(Key::leftShift, 1);
    input.tap(Key::a, 0);
    EXPECT_TRUE(isDown(Key::leftShift));
    input.release(Key::leftShift, 1);
    EXPECT_FALSE(isDown(Key::leftShift));
}

TEST_F(Rig, keycodeThatNoKeyboardHas_throws) {
    EXPECT_THROW(input.press(XKeycode{7}), std::runtime_error);
    EXPECT_THROW(input.press(Key::a, 2), std::runtime_error);
}

TEST_F(Rig, pointer_goesWhereItIsSent) {
    input.pointAt(300, 200);
    EXPECT_EQ(pointer(), std::pair(300, 200));
    input.movePointer(10, -5);
    EXPECT_EQ(pointer(), std::pair(310, 195));
}

} // namespace
} // namespace talvera::test
