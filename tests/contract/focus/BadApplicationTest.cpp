// SPDX-License-Identifier: MIT
// Applications that answer late, nonsense, or without end.
#include "BadApplication.h"

#include <csignal>

using namespace talvera;
using namespace talvera::test;

TEST_F(BadApplication, hungApplication_costsABoundedMomentAndIsHeardAgainLater) {
    Peer peer(TALVERA_PEERS "/gtk-widgets.py", {"button"});
    ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    peer.signal(SIGSTOP);
    expectSilenceInTime();
    peer.signal(SIGCONT);
    EXPECT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
}

TEST_F(BadApplication, nonsense_isSilence) {
    Peer peer(TALVERA_PEERS "/hostile-accessible.py", {"nonsense"});
    peer.readUntil("ready");
    ASSERT_TRUE(isInFront(peer));
    expectSilenceInTime();
}

TEST_F(BadApplication, noAnswer_isSilence) {
    Peer peer(TALVERA_PEERS "/hostile-accessible.py", {"silence"});
    peer.readUntil("ready");
    ASSERT_TRUE(isInFront(peer));
    expectSilenceInTime();
}

TEST_F(BadApplication, endlessTree_isSearchedForABoundedMomentOnly) {
    Peer peer(TALVERA_PEERS "/hostile-accessible.py", {"endless"});
    peer.readUntil("ready");
    ASSERT_TRUE(isInFront(peer));
    expectSilenceInTime();
}
