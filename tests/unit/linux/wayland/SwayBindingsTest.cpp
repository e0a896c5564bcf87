// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/swayBindings.h"
#include "FakeKeyboardLayout.h"
#include "linux/wayland/sway/keysymOf.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace talvera;

namespace {

constexpr KeyChord allButShift{KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T};

std::optional<KeyEvent> eventOf(const QByteArray& json) {
    return keyEventOf(QJsonDocument::fromJson(json).object());
}

TEST(SwayBindings, chordWithFurtherModifiers_hasABindingForEach) {
    EXPECT_EQ(commandsToBind(bindingsOf(allButShift, false)),
              "bindcode --no-repeat Ctrl+Mod1+Mod4+28 nop talvera-down 17; "
              "bindcode --no-repeat Shift+Ctrl+Mod1+Mod4+28 nop talvera-down 17");
    EXPECT_EQ(bindingsOf({0, VirtualKey::F9}, true).size(), 32);
}

TEST(SwayBindings, heldChord_isToldOfItsEndAlsoWhileTheScreenIsLocked) {
    EXPECT_EQ(commandsToUnbind(bindingsOf(allButShift, true)),
              "unbindcode Ctrl+Mod1+Mod4+28; unbindcode --release --locked --inhibited Ctrl+Mod1+Mod4+28; "
              "unbindcode Shift+Ctrl+Mod1+Mod4+28; "
              "unbindcode --release --locked --inhibited Shift+Ctrl+Mod1+Mod4+28");
}

TEST(SwayBindings, whatSwayHasNoNameFor_hasNone) {
    EXPECT_TRUE(bindingsOf({KeyFlag::Fn, VirtualKey::T}, true).empty());
    EXPECT_TRUE(bindingsOf({KeyFlag::Control, VirtualKey::Shift}, true).empty());
    EXPECT_TRUE(bindingsOf({KeyFlag::Control, VirtualKey{200}}, true).empty());
    EXPECT_TRUE(commandsToBind({}).isEmpty());
}

TEST(SwayBindings, modeOfAnyName_isComeBackTo) {
    EXPECT_EQ(inFirstMode("nop", "resize"), R"(mode default; nop; mode "resize")");
    EXPECT_EQ(inFirstMode("nop; nop", R"($x: "y" it's\now)"),
              R"(mode default; nop; nop; mode "$$x: "'"'"y"'"'" it's\now")");
}

TEST(SwayBindings, ownEvents_areKeyEvents) {
    const auto down = eventOf(R"({"change":"run","binding":{"command":"nop talvera-down 49",
        "event_state_mask":["Shift","Control","Mod1"],"input_code":65}})");
    ASSERT_TRUE(down);
    EXPECT_EQ(down->type, KeyEventType::KeyDown);
    EXPECT_EQ(down->keyCode, VirtualKey::Space);
    EXPECT_EQ(down->flags, KeyFlag::Shift | KeyFlag::Control | KeyFlag::Option);
    const auto up = eventOf(R"({"binding":{"command":"nop talvera-up 49","event_state_mask":["Mod4"]}})");
    ASSERT_TRUE(up);
    EXPECT_EQ(up->type, KeyEventType::KeyUp);
    EXPECT_EQ(up->flags, KeyFlag::Command);
}

TEST(SwayBindings, eventsOfOthers_areNone) {
    for (const auto* json : {R"({"binding":{"command":"exec foot"}})", R"({"binding":{"command":""}})",
                             R"({"binding":{"command":"nop"}})", R"({"change":"reload"})", "nonsense"})
        EXPECT_FALSE(eventOf(json)) << json;
}

TEST(KeysymOf, letter_isThatOfTheLayoutAndOtherKeysAreTheSameEverywhere) {
    test::FakeKeyboardLayout layout({{VirtualKey::Y, "Z"}, {VirtualKey::Space, " "}});
    EXPECT_EQ(keysymOf(VirtualKey::Y, layout), static_cast<xkb_keysym_t>(XKB_KEY_z));
    EXPECT_EQ(keysymOf(VirtualKey::Space, layout), static_cast<xkb_keysym_t>(XKB_KEY_space));
    EXPECT_EQ(keysymOf(VirtualKey::F9, layout), static_cast<xkb_keysym_t>(XKB_KEY_F9));
    EXPECT_EQ(keysymOf(VirtualKey{200}, layout), static_cast<xkb_keysym_t>(XKB_KEY_NoSymbol));
}

} // namespace
