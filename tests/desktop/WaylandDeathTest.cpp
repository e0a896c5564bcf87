// SPDX-License-Identifier: MIT
// The agent dies in a Wayland session.
#include "OnWayland.h"
#include "RecogniserGate.h"

using namespace talvera::test;

namespace {

class DeathOnWayland : public OnWayland {};

} // namespace

TEST_F(DeathOnWayland, killedAtRest_givesTheKeysBack) {
    startAgent();
    agent->kill();
    expectKeysAreTheUsersAgain();

    startAgentAgain();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
}

TEST_F(DeathOnWayland, killedWhileItListens_givesTheKeysBack) {
    startAgent();
    pressHotkey();
    agent->await("menu recording");
    agent->kill();
    releaseHotkey();
    expectKeysAreTheUsersAgain();
}

TEST_F(DeathOnWayland, killedWhileItRecognises_givesTheKeysBack) {
    RecogniserGate gate;
    startAgentOf(gate.program());
    const Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    gate.awaitRun();
    agent->kill();
    expectKeysAreTheUsersAgain();
    EXPECT_EQ(editor.text(), "");
}
