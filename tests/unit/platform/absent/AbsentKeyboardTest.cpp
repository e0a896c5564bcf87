// SPDX-License-Identifier: MIT
// A session that lets us neither watch nor post keys nor set its clipboard: everything is answered at once,
// and every answer says so.
#include "platform/absent/NoEventTaps.h"
#include "platform/absent/NoKeyEventPoster.h"
#include "platform/absent/NoKeyboardLayout.h"
#include "platform/absent/NoPasteboard.h"
#include "platform/absent/NoSessionAccess.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(AbsentEventTaps, tap_isRefused) {
    NoEventTaps taps;
    EXPECT_EQ(taps.create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
}

TEST(AbsentKeyEventPoster, text_canNeitherBeTypedNorPasted) {
    NoKeyEventPoster poster;
    poster.prepare();
    const auto target = poster.focusedTarget();
    ASSERT_TRUE(target);
    const auto session = poster.beginTyping({QStringLiteral("a")}, target);
    ASSERT_TRUE(session);
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(session->post(0, KeyPhase::Up), PostResult::CutOff);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::CutOff);
}

TEST(AbsentPasteboard, text_isRefused) {
    NoPasteboard pasteboard;
    EXPECT_FALSE(pasteboard.setString(QStringLiteral("a")));
    EXPECT_FALSE(pasteboard.state().isHeld);
}

TEST(AbsentKeyboardLayout, key_writesNothing) {
    EXPECT_EQ(NoKeyboardLayout().character(VirtualKey::T), std::nullopt);
}

TEST(AbsentSessionAccess, session_isNoneToWorkIn) {
    NoSessionAccess access;
    EXPECT_EQ(access.lacks(), std::vector{SessionLack::KnownSession});
    EXPECT_FALSE(access.canWatchKeys());
}

} // namespace
