// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyWatch.h"

#include "KeyLogWindow.h"
#include "KeyMap.h"
#include "RigInput.h"

#include <gtest/gtest.h>

using namespace talvera;
using talvera::test::KeyMap;

namespace {

class X11KeyWatchTest : public testing::Test {
protected:
    void readAll() {
        window.settleServer();
        ASSERT_TRUE(watch->readEvents());
    }

    test::KeyLogWindow window;
    test::RigInput keys;
    std::vector<KeyEvent> told;
    std::unique_ptr<X11KeyWatch> watch =
        X11KeyWatch::open({}, [this](const KeyEvent& event) { told.push_back(event); });
};

TEST_F(X11KeyWatchTest, keysThatNobodyWaitsFor_areNotTold) {
    ASSERT_EQ(watch->waitFor({KeyInterest(std::uint16_t(54)), KeyInterest(KeyChord{0xC0000, 49})}),
              std::vector(2, WatchResult::Watching));
    for (int keycode = 9; keycode < 97; ++keycode) {
        if (keycode != 65 && keycode != 66) // Space, and Caps Lock for the sake of the next test
            keys.tap(keycode);
    }
    keys.tap(65); // without its modifiers
    keys.tap(77); // Num Lock off again
    readAll();
    EXPECT_TRUE(told.empty());
}

TEST_F(X11KeyWatchTest, keyThatBecomesAModifierLater_showsInTheFlags) {
    watch->waitFor({KeyInterest(std::uint16_t(54))});
    const KeyMap map({QStringLiteral("-option"), QStringLiteral("ctrl:nocaps")});
    readAll();
    keys.press(66);
    keys.press(134);
    keys.release(134);
    keys.release(66);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].flags, KeyFlag::Command | KeyFlag::Control);
    EXPECT_EQ(told[1].flags, KeyFlag::Control);
}

TEST_F(X11KeyWatchTest, tapReadOnlyAfterItsEnd_isToldWhole) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, 49})});
    for (const int key : {37, 64, 65})
        keys.press(key);
    for (const int key : {65, 64, 37})
        keys.release(key);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].type, KeyEventType::KeyDown);
    EXPECT_EQ(told[0].flags, 0xC0000U);
    EXPECT_EQ(told[1].type, KeyEventType::KeyUp);
}

TEST_F(X11KeyWatchTest, suspendedWatch_tellsNothingAndHasNoChords) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, 49})});
    watch->suspend({});
    for (const int key : {37, 64, 65})
        keys.press(key);
    for (const int key : {65, 64, 37})
        keys.release(key);
    readAll();
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(window.takeKeys().size(), 6U);
}

TEST_F(X11KeyWatchTest, specialKeyLetGoDuringASuspension_isToldAfterwards) {
    const std::vector interests{KeyInterest(std::uint16_t(61))};
    watch->waitFor(interests);
    keys.press(108);
    readAll();
    ASSERT_EQ(told.size(), 1U);
    watch->suspend({61});
    keys.release(108);
    readAll();
    EXPECT_EQ(told.size(), 1U);
    watch->resume();
    watch->waitFor(interests);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].type, KeyEventType::FlagsChanged);
    EXPECT_EQ(told[1].flags, 0U);
}

} // namespace
