// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyWatch.h"

#include "KeyLogWindow.h"
#include "KeyMap.h"
#include "RigInput.h"
#include "keys.h"

#include <gtest/gtest.h>

using namespace talvera;
using talvera::test::KeyMap;
namespace Key = talvera::test::Key;

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
    ASSERT_EQ(watch->waitFor(
                  {KeyInterest(VirtualKey::RightCommand), KeyInterest(KeyChord{0xC0000, VirtualKey::Space})}),
              std::vector(2, WatchResult::Watching));
    for (int keycode = 9; keycode < 97; ++keycode) {
        if (keycode != Key::space && keycode != Key::capsLock) // that one for the sake of the next test
            keys.tap(keycode);
    }
    keys.tap(Key::space);   // without its modifiers
    keys.tap(Key::numLock); // Num Lock off again
    readAll();
    EXPECT_TRUE(told.empty());
}

TEST_F(X11KeyWatchTest, keyThatBecomesAModifierLater_showsInTheFlags) {
    watch->waitFor({KeyInterest(VirtualKey::RightCommand)});
    const KeyMap map({QStringLiteral("-option"), QStringLiteral("ctrl:nocaps")});
    readAll();
    keys.press(Key::capsLock);
    keys.press(Key::rightSuper);
    keys.release(Key::rightSuper);
    keys.release(Key::capsLock);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].flags, KeyFlag::Command | KeyFlag::Control);
    EXPECT_EQ(told[1].flags, KeyFlag::Control);
}

TEST_F(X11KeyWatchTest, tapReadOnlyAfterItsEnd_isToldWhole) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, VirtualKey::Space})});
    for (const int key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    for (const int key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].type, KeyEventType::KeyDown);
    EXPECT_EQ(told[0].flags, 0xC0000U);
    EXPECT_EQ(told[1].type, KeyEventType::KeyUp);
}

TEST_F(X11KeyWatchTest, suspendedWatch_tellsNothingAndHasNoChords) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, VirtualKey::Space})});
    watch->suspend({});
    for (const int key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    for (const int key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(window.takeKeys().size(), 6U);
}

TEST_F(X11KeyWatchTest, specialKeyLetGoDuringASuspension_isToldAfterwards) {
    const std::vector interests{KeyInterest(VirtualKey::RightOption)};
    watch->waitFor(interests);
    keys.press(Key::rightAlt);
    readAll();
    ASSERT_EQ(told.size(), 1U);
    watch->suspend({VirtualKey::RightOption});
    keys.release(Key::rightAlt);
    readAll();
    EXPECT_EQ(told.size(), 1U);
    watch->resume();
    watch->waitFor(interests);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].type, KeyEventType::FlagsChanged);
    EXPECT_EQ(told[1].flags, 0U);
}

} // namespace
