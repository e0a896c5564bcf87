// SPDX-License-Identifier: MIT
#include "shell/hud/DictationHUDState.h"
#include "PrintQt.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

using HUD = DictationHUDState;

TEST(DictationHUDState, inWords_itTellsItsCaseAndWhatItShows) {
    EXPECT_EQ(inWords(HUD::Hidden{}), "hidden");
    EXPECT_EQ(inWords(HUD::Listening{}), "listening");
    EXPECT_EQ(inWords(HUD::Transcribing{}), "transcribing");
    EXPECT_EQ(inWords(HUD::Translating{QStringLiteral("German")}), "translating German");
    EXPECT_EQ(inWords(HUD::Notice{QStringLiteral("It broke"), HUD::NoticeTone::Warn}),
              "notice It broke warn");
    EXPECT_EQ(inWords(HUD::Notice{QStringLiteral("Done"), HUD::NoticeTone::Info}), "notice Done info");
    EXPECT_EQ(inWords(HUD::PermissionRequired{HUD::PermissionKind::Microphone}),
              "permissionRequired microphone");
    EXPECT_EQ(inWords(HUD::PermissionRequired{HUD::PermissionKind::Accessibility}),
              "permissionRequired accessibility");
}

} // namespace
