// SPDX-License-Identifier: MIT
// What every workspace promises, the fake one and that of an X11 session alike.
#include "FakeWorkspace.h"
#include "Peer.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/EwmhWorkspace.h"

#include <gtest/gtest.h>

#include <map>

using namespace talvera;

namespace {

class FakeSession {
public:
    Workspace& workspace() { return m_workspace; }

    pid_t startInFront(const QString& name) {
        m_workspace.runInFront({++m_lastPid, name, name});
        return m_lastPid;
    }
    void bringToFront(pid_t pid) { m_workspace.setFrontmost(pid); }
    void quit(pid_t pid) { m_workspace.quit(pid); }
    static bool becomes(const std::function<bool()>& condition) { return condition(); }

private:
    test::FakeWorkspace m_workspace;
    pid_t m_lastPid = 1000;
};

class X11Session {
public:
    Workspace& workspace() { return m_workspace; }

    pid_t startInFront(const QString& name) {
        auto peer = std::make_unique<test::Peer>(TALVERA_WINDOW_PEER,
                                                 QStringList{"instance=" + name.toLower(), "class=" + name});
        peer->readUntil("mapped ");
        const auto pid = peer->pid();
        m_peers[pid] = std::move(peer);
        bringToFront(pid);
        return pid;
    }
    void bringToFront(pid_t pid) { m_peers.at(pid)->tell("activate"); }
    void quit(pid_t pid) { m_peers.erase(pid); }
    static bool becomes(const std::function<bool()>& condition) { return test::eventually(condition); }

private:
    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    DesktopEntryCatalog m_installed{{}, {}};
    EwmhWorkspace m_workspace{*m_connection, m_installed};
    std::map<pid_t, std::unique_ptr<test::Peer>> m_peers;
};

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

using Sessions = testing::Types<FakeSession, X11Session>;
TYPED_TEST_SUITE(WorkspaceContract, Sessions);

TYPED_TEST(WorkspaceContract, emptySession_hasNobodyInFront) {
    EXPECT_EQ(this->workspace().frontmostApplication(), std::nullopt);
}

TYPED_TEST(WorkspaceContract, applicationInFront_isToldWithProcessIdentifierAndName) {
    const auto pid = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(pid));
    EXPECT_EQ(this->workspace().frontmostApplication(), (RunningApplication{pid, "Alpha", "Alpha"}));
}

TYPED_TEST(WorkspaceContract, frontApplication_followsTheFocus) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    EXPECT_TRUE(this->comesToFront(second));
    this->session.bringToFront(first);
    EXPECT_TRUE(this->comesToFront(first));
}

TYPED_TEST(WorkspaceContract, lastApplicationQuit_leavesNobodyInFront) {
    const auto pid = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(pid));
    this->session.quit(pid);
    EXPECT_TRUE(this->session.becomes([&] { return !this->workspace().frontmostApplication(); }));
}

TYPED_TEST(WorkspaceContract, runningApplication_isThereInTheBackgroundUntilItQuits) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    EXPECT_EQ(this->workspace().runningApplication(first), (RunningApplication{first, "Alpha", "Alpha"}));
    this->session.quit(first);
    EXPECT_EQ(this->workspace().runningApplication(first), std::nullopt);
}

TYPED_TEST(WorkspaceContract, activation_bringsTheApplicationBack) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    EXPECT_TRUE(this->workspace().activate(first));
    EXPECT_TRUE(this->comesToFront(first));
}

TYPED_TEST(WorkspaceContract, activationOfWhatHasQuit_isRefused) {
    const auto first = this->session.startInFront("Alpha");
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->session.startInFront("Beta");
    ASSERT_TRUE(this->comesToFront(second));
    this->session.quit(first);
    EXPECT_FALSE(this->workspace().activate(first));
    EXPECT_TRUE(this->comesToFront(second));
}

TYPED_TEST(WorkspaceContract, ownIdentifier_isKnown) {
    EXPECT_EQ(this->workspace().ownBundleID(), "talvera");
}

} // namespace
