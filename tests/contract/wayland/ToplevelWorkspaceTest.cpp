// SPDX-License-Identifier: MIT
// The windows as a compositor tells every program of them, of Wayland and of X programs.
#include "linux/wayland/toplevels/ToplevelWorkspace.h"
#include "Peer.h"
#include "WorkspaceContract.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/wayland/client/WaylandConnection.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>

namespace talvera::test {

namespace {

class SessionOfToplevels {
public:
    Workspace& workspace() { return m_workspace; }

    /// The user's own way there, a click, has the same effect.
    void bringToFront(pid_t window) { m_workspace.activate(window); }
    /// The process ends a little before the compositor tells of it.
    void quit(pid_t window) {
        m_peers.erase(window);
        if (!becomes([&] { return !m_workspace.runningApplication(window); }))
            throw std::runtime_error("the window doesn't go");
    }
    static bool becomes(const std::function<bool()>& condition) {
        return eventually(condition, std::chrono::seconds(60));
    }

protected:
    pid_t started(const QString& name, std::unique_ptr<Peer> peer) {
        std::optional<RunningApplication> front;
        const auto isInFront = [&] {
            front = m_workspace.frontmostApplication();
            return front && front->localizedName == name && !m_peers.contains(front->pid);
        };
        if (!becomes(isInFront))
            throw std::runtime_error("the window doesn't come");
        m_peers[front->pid] = std::move(peer);
        return front->pid;
    }

private:
    DesktopEntryCatalog m_installed{{}, {}};
    ToplevelWorkspace m_workspace{Toplevels::open(std::make_unique<WaylandConnection>()), m_installed};
    std::map<pid_t, std::unique_ptr<Peer>> m_peers;
};

class WithWaylandPrograms : public SessionOfToplevels {
public:
    pid_t startInFront(const QString& name) {
        return started(name,
                       std::make_unique<Peer>("/usr/bin/python3", QStringList{TALVERA_WAYLAND_WINDOW, name}));
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(OfToplevels, WorkspaceContract, WithWaylandPrograms);

TEST(ToplevelWorkspaceTest, twoWindowsOfOneName_areTwoApplications) {
    WithWaylandPrograms session;
    const auto first = session.startInFront("Alpha");
    const auto second = session.startInFront("Alpha");
    EXPECT_NE(first, second);
    EXPECT_TRUE(session.workspace().activate(first));
    EXPECT_TRUE(session.becomes([&] {
        return session.workspace().frontmostApplication().value_or(RunningApplication()).pid == first;
    }));
}

TEST(ToplevelWorkspaceTest, windowNumbers_belongToNoProcess) {
    constexpr pid_t mostProcesses = 1 << 22;
    WithWaylandPrograms session;
    EXPECT_GT(session.startInFront("Alpha"), mostProcesses);
    EXPECT_EQ(session.workspace().runningApplication(1), std::nullopt);
    EXPECT_FALSE(session.workspace().activate(1));
}

} // namespace

} // namespace talvera::test
