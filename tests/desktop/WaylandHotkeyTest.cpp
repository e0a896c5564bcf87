// SPDX-License-Identifier: MIT
// The hotkey in a Wayland session whose compositor keeps chords for us.
#include "OnWayland.h"

#include <QJsonObject>

using namespace talvera::test;

namespace {

class HotkeyOnWayland : public OnWayland {};

} // namespace

TEST_F(HotkeyOnWayland, freshPreferences_haveAChordThatWorksHere) {
    startAgent();
    const auto told = status();
    EXPECT_TRUE(told["keyboard"].toBool());
    EXPECT_TRUE(told["ready"].toBool());
    EXPECT_EQ(told["hotkey"].toString(), "watching");
}

TEST_F(HotkeyOnWayland, keyAloneAsTheHotkey_isSaidNotToWork) {
    const QByteArray binding = R"({"holdSpecial":{"_0":"rightCommand"}})";
    home.setPreferences({{"hotkeyBinding", QJsonObject{{"data", QString::fromLatin1(binding.toBase64())}}}});
    agent.emplace(home);
    agent->await("hud notice A key held alone can't be your hotkey here — choose several, such as "
                 "Ctrl+Alt+Space warn");
    EXPECT_EQ(status()["hotkey"].toString(), "unavailable");
}
