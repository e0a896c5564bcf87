// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Workspace.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// What every workspace promises, the fake one and that of a session of any kind alike. A `Session` has a
/// `workspace()` and a user who starts applications in it, brings them to the front and quits them.
template <typename Session>
class WorkspaceContract : public testing::Test {
protected:
    Session session;

    /// The windows of the test before may still be closing.
    void SetUp() override {
        ASSERT_TRUE(session.becomes([&] { return !workspace().frontmostApplication(); }));
    }

    Workspace& workspace() { return session.workspace(); }

    bool comesToFront(pid_t pid) {
        return session.becomes([&] {
            const auto frontmost = workspace().frontmostApplication();
            return frontmost && frontmost->pid == pid;
        });
    }
};

TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, emptySession_hasNobodyInFront) {
    EXPECT_EQ(this->workspace().frontmostApplication(), std::nullopt);
}

TYPED_TEST_P(WorkspaceContract, applicationInFront_isToldWithProcessIdentifierAndName) {
    const auto pid = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(pid));
    EXPECT_EQ(this->workspace().frontmostApplication(), (RunningApplication{pid, "Alpha", "Alpha"}));
}

TYPED_TEST_P(WorkspaceContract, frontApplication_followsTheFocus) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    EXPECT_TRUE(this->comesToFront(second));
    this->session.bringToFront(first);
    EXPECT_TRUE(this->comesToFront(first));
}

TYPED_TEST_P(WorkspaceContract, lastApplicationQuit_leavesNobodyInFront) {
    const auto pid = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(pid));
    this->session.quit(pid);
    EXPECT_TRUE(this->session.becomes([&] { return !this->workspace().frontmostApplication(); }));
}

TYPED_TEST_P(WorkspaceContract, runningApplication_isThereInTheBackgroundUntilItQuits) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    EXPECT_EQ(this->workspace().runningApplication(first), (RunningApplication{first, "Alpha", "Alpha"}));
    this->session.quit(first);
    EXPECT_EQ(this->workspace().runningApplication(first), std::nullopt);
}

TYPED_TEST_P(WorkspaceContract, activation_bringsTheApplicationBack) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    EXPECT_TRUE(this->workspace().activate(first));
    EXPECT_TRUE(this->comesToFront(first));
}

TYPED_TEST_P(WorkspaceContract, activationOfWhatHasQuit_isRefused) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    this->session.quit(first);
    EXPECT_FALSE(this->workspace().activate(first));
    EXPECT_TRUE(this->comesToFront(second));
}

TYPED_TEST_P(WorkspaceContract, ownIdentifier_isKnown) {
    EXPECT_EQ(this->workspace().ownBundleID(), "talvera");
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, emptySession_hasNobodyInFront,
                            applicationInFront_isToldWithProcessIdentifierAndName,
                            frontApplication_followsTheFocus, lastApplicationQuit_leavesNobodyInFront,
                            runningApplication_isThereInTheBackgroundUntilItQuits,
                            activation_bringsTheApplicationBack, activationOfWhatHasQuit_isRefused,
                            ownIdentifier_isKnown);

} // namespace talvera::test
