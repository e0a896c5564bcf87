// SPDX-License-Identifier: MIT
// Keys held alone that the layout has made Compose: the application would take the first letters of the text
// for the rest of a sequence.
#include "HotkeyOnX11.h"
#include "KeyMap.h"

using namespace talvera;
using namespace talvera::test;
using Special = HotkeyBinding::SpecialKey;

namespace {

class X11ComposeKey : public HotkeyOnX11 {
protected:
    static KeyMap option(const char* name) {
        return KeyMap({QStringLiteral("-option"), QString::fromLatin1(name)});
    }
};

TEST_F(X11ComposeKey, rightCtrl_isToldAndStartsNothing) {
    const auto map = option("compose:rctrl");
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
}

TEST_F(X11ComposeKey, rightCtrl_leavesRightSuperAHotkey) {
    const auto map = option("compose:rctrl");
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::rightSuper);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11ComposeKey, rightSuper_startsNothingAndLeavesRightCtrlAHotkey) {
    const auto map = option("compose:rwin");
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::rightSuper);
    EXPECT_EQ(takeCalls(), Calls{});
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_TRUE(refused.empty());
}

TEST_F(X11ComposeKey, rightAlt_isToldAndStartsNothing) {
    const auto map = option("compose:ralt");
    install(HotkeyBinding::holdSpecial(Special::RightOption));
    tap(Key::rightAlt);
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
}

TEST_F(X11ComposeKey, onlyWithAnotherModifier_isNoMatter) {
    const auto map = option("compose:rctrl-altgr");
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_TRUE(refused.empty());
}

TEST_F(X11ComposeKey, hotkeyThatBecomesIt_startsNothingAnyMore) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    const auto map = option("compose:rctrl");
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{});
}

} // namespace
