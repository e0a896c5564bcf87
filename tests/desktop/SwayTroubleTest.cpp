// SPDX-License-Identifier: MIT
// What can come in between in a sway session: sway begins anew, the agent ends.
#include "OnSway.h"

using namespace talvera::test;

namespace {

class ReloadOnSway : public OnSway {};
class EndOnSway : public OnSway {};

} // namespace

TEST_F(ReloadOnSway, configurationReadAgain_theHotkeyGoesOnWorking) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    // One of the agent's bindings that this dictation doesn't need: it is there again when all are.
    const auto takeOneAway = unbindings().at(1);
    ASSERT_TRUE(isDone(takeOneAway));
    ASSERT_FALSE(isDone(takeOneAway));
    tellSway("reload");
    EXPECT_TRUE(eventually([&] { return isDone(takeOneAway); }));
    dictateInto(editor);
}

TEST_F(ReloadOnSway, hotkeyThatTheUserBindsMeanwhile_isSaidToBeTakenAsLongAsItIs) {
    startAgent();
    {
        const UsersConfiguration theirs("bindsym Ctrl+Mod1+space nop theirs\n");
        agent->await("hud notice Another program uses your hotkey — choose another one warn");
        EXPECT_EQ(status()["hotkey"].toString(), "taken");
    }
    EXPECT_TRUE(eventually([&] { return status()["hotkey"].toString() == "watching"; }));
}

TEST_F(EndOnSway, ended_givesTheKeysBack) {
    startAgent();
    for (const auto& binding : unbindings())
        EXPECT_TRUE(isDone(binding)) << binding.toStdString();
    tellSway("reload");
    ASSERT_TRUE(eventually([] { return isDone(unbindings().at(1)); }));
    EXPECT_EQ(agent->end(), 0);
    expectKeysAreTheUsersAgain();
}
