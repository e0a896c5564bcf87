// SPDX-License-Identifier: MIT
// The windows of a sway session, of Wayland and of X programs.
#include "linux/wayland/sway/SwayWorkspace.h"
#include "Peer.h"
#include "WorkspaceContract.h"
#include "linux/applications/DesktopEntryCatalog.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>

namespace talvera::test {

namespace {

constexpr std::chrono::seconds patience{60};

QString swaySocket() {
    return qEnvironmentVariable("SWAYSOCK");
}

/// What the user has sway do.
void tellSway(const QString& command) {
    if (QProcess::execute("swaymsg", {"-q", command}) != 0)
        throw std::runtime_error("sway doesn't do: " + command.toStdString());
}

class SwaySession {
public:
    Workspace& workspace() { return m_workspace; }

    void bringToFront(pid_t pid) { tellSway("[pid=" + QString::number(pid) + "] focus"); }
    void quit(pid_t pid) { m_peers.erase(pid); }
    static bool becomes(const std::function<bool()>& condition) { return eventually(condition, patience); }

protected:
    pid_t started(std::unique_ptr<Peer> peer) {
        const auto pid = peer->pid();
        if (!comesToFront(std::move(peer), patience))
            throw std::runtime_error("the window doesn't come");
        return pid;
    }
    /// Sway focuses a new window by itself.
    bool comesToFront(std::unique_ptr<Peer> peer, std::chrono::milliseconds patienceWithIt) {
        const auto pid = peer->pid();
        m_peers[pid] = std::move(peer);
        const auto isInFront = [&] {
            return workspace().frontmostApplication().value_or(RunningApplication()).pid == pid;
        };
        return eventually(isInFront, patienceWithIt);
    }

private:
    DesktopEntryCatalog m_installed{{}, {}};
    SwayWorkspace m_workspace{SwayIpc(swaySocket()), m_installed};
    std::map<pid_t, std::unique_ptr<Peer>> m_peers;
};

class WithWaylandPrograms : public SwaySession {
public:
    pid_t startInFront(const QString& name) {
        return started(std::make_unique<Peer>("/usr/bin/python3", QStringList{TALVERA_WAYLAND_WINDOW, name}));
    }
};

class WithXPrograms : public SwaySession {
public:
    /// Sway 1.10 now and then doesn't hear of an X program's window; the user starts the program again then.
    pid_t startInFront(const QString& name) {
        const auto start = [&] {
            return std::make_unique<Peer>(TALVERA_WINDOW_PEER,
                                          QStringList{"instance=" + name.toLower(), "class=" + name});
        };
        auto peer = start();
        const auto pid = peer->pid();
        if (comesToFront(std::move(peer), std::chrono::seconds(15)))
            return pid;
        quit(pid);
        return started(start());
    }
};

using Sessions = testing::Types<WithWaylandPrograms, WithXPrograms>;
INSTANTIATE_TYPED_TEST_SUITE_P(OnSway, WorkspaceContract, Sessions);

class SwayWorkspaceTest : public testing::Test {
protected:
    SwayWorkspaceTest() { tellSway("workspace 1"); }
    ~SwayWorkspaceTest() override { tellSway("workspace 1"); }

    Workspace& workspace() { return wayland.workspace(); }
    bool isInFront(pid_t pid) {
        return SwaySession::becomes([&] {
            const auto front = workspace().frontmostApplication();
            return front && front->pid == pid;
        });
    }

    WithWaylandPrograms wayland;
    WithXPrograms x11;
};

TEST_F(SwayWorkspaceTest, emptyWorkspace_hasNobodyInFrontAlthoughWindowsAreElsewhere) {
    const auto pid = wayland.startInFront("Alpha");
    tellSway("workspace 2");
    EXPECT_TRUE(SwaySession::becomes([&] { return !workspace().frontmostApplication(); }));
    EXPECT_TRUE(workspace().activate(pid));
    EXPECT_TRUE(isInFront(pid));
}

TEST_F(SwayWorkspaceTest, floatingWindow_isInFrontAndComesBack) {
    const auto floating = wayland.startInFront("Alpha");
    tellSway("floating enable");
    EXPECT_TRUE(isInFront(floating));
    const auto other = x11.startInFront("Beta");
    EXPECT_TRUE(isInFront(other));
    EXPECT_TRUE(workspace().activate(floating));
    EXPECT_TRUE(isInFront(floating));
}

TEST_F(SwayWorkspaceTest, waylandAndXPrograms_areToldAlike) {
    const auto first = wayland.startInFront("Alpha");
    const auto second = x11.startInFront("Beta");
    EXPECT_EQ(workspace().frontmostApplication(), (RunningApplication{second, "Beta", "Beta"}));
    EXPECT_EQ(workspace().runningApplication(first), (RunningApplication{first, "Alpha", "Alpha"}));
    EXPECT_TRUE(workspace().activate(first));
    EXPECT_TRUE(isInFront(first));
}

TEST_F(SwayWorkspaceTest, withoutSway_hasNobodyAndActivatesNone) {
    DesktopEntryCatalog none({}, {});
    SwayWorkspace gone(SwayIpc("/nowhere"), none);
    EXPECT_EQ(gone.frontmostApplication(), std::nullopt);
    EXPECT_FALSE(gone.activate(::getpid()));
}

} // namespace

} // namespace talvera::test
