// SPDX-License-Identifier: MIT
// The windows of a Plasma session, of Wayland and of X programs.
#include "linux/wayland/kwin/KwinWorkspace.h"
#include "KeysInWindow.h"
#include "WorkspaceContract.h"
#include "linux/applications/DesktopEntryCatalog.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>

namespace talvera::test {

namespace {

class KwinSession {
public:
    Workspace& workspace() { return m_workspace; }

    /// The user's own way there, a click, has the same effect as KWin's own call.
    void bringToFront(pid_t pid) { m_workspace.activate(pid); }
    void quit(pid_t pid) { m_peers.erase(pid); }
    static bool becomes(const std::function<bool()>& condition) { return KeysInWindow::becomes(condition); }

    pid_t startOfWayland(const QString& name) {
        return started(std::make_unique<Peer>("/usr/bin/python3", QStringList{TALVERA_WAYLAND_WINDOW, name}));
    }
    pid_t startOfX(const QString& name) {
        return started(std::make_unique<Peer>(
            "/bin/sh",
            QStringList{"-c", R"(exec "$0" pid=$$ "instance=$1" "class=$1")", TALVERA_WINDOW_PEER, name}));
    }

private:
    pid_t started(std::unique_ptr<Peer> peer) {
        const auto pid = peer->pid();
        m_peers[pid] = std::move(peer);
        if (!becomes(
                [&] { return workspace().frontmostApplication().value_or(RunningApplication()).pid == pid; }))
            throw std::runtime_error("the window doesn't come");
        return pid;
    }

    DesktopEntryCatalog m_installed{{}, {}};
    KwinWorkspace m_workspace{std::make_shared<KwinWindows>(std::make_shared<KwinGuard>()), m_installed};
    std::map<pid_t, std::unique_ptr<Peer>> m_peers;
};

class WithWaylandPrograms : public KwinSession {
public:
    pid_t startInFront(const QString& name) { return startOfWayland(name); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(OnKwin, WorkspaceContract, WithWaylandPrograms);

TEST(KwinWorkspaceTest, waylandAndXPrograms_areToldAlike) {
    KwinSession session;
    auto& workspace = session.workspace();
    const auto comesToFront = [&](pid_t pid) {
        return KwinSession::becomes(
            [&] { return workspace.frontmostApplication().value_or(RunningApplication()).pid == pid; });
    };
    const auto first = session.startOfWayland("Alpha");
    const auto second = session.startOfX("beta"); // KWin 5.27 has them in small letters
    EXPECT_EQ(workspace.frontmostApplication(), (RunningApplication{second, "beta", "beta"}));
    EXPECT_EQ(workspace.runningApplication(first), (RunningApplication{first, "Alpha", "Alpha"}));
    EXPECT_TRUE(workspace.activate(first));
    EXPECT_TRUE(comesToFront(first));
    EXPECT_TRUE(workspace.activate(second));
    EXPECT_TRUE(comesToFront(second));
    session.quit(second);
    EXPECT_TRUE(comesToFront(first));
    EXPECT_FALSE(workspace.activate(second));
}

// As it is done where the desktop's search field isn't installed.
TEST(KwinWindowsTest, windowsActivatedByScript_comeToTheFront) {
    KwinSession session;
    const auto first = session.startOfWayland("Alpha");
    const auto second = session.startOfX("beta");
    KwinWindowListener listener(QDBusConnection::sessionBus(), 1000);
    listener.listen();
    const auto active = [&] {
        QCoreApplication::processEvents();
        return listener.active().value_or(KwinWindow()).pid;
    };
    ASSERT_TRUE(KwinSession::becomes([&] { return active() == second; }));
    for (const auto pid : {first, second, first}) {
        listener.activateByScript(listener.lastOf(pid).value_or(KwinWindow()).id);
        EXPECT_TRUE(KwinSession::becomes([&] { return active() == pid; }));
    }
}

TEST(KwinWindowsTest, listenerThatIsMadeLate_knowsTheWindowsThatAreThere) {
    Peer first("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Alpha"});
    ASSERT_TRUE(says(first, "focus"));
    const KeysInWindow inFront;
    const KwinWindows windows(std::make_shared<KwinGuard>());
    EXPECT_TRUE(KwinSession::becomes([&] { return windows.active().has_value(); }));
    EXPECT_NE(windows.active().value_or(KwinWindow()).pid, first.pid());
    EXPECT_TRUE(windows.lastOf(first.pid()).has_value());
}

} // namespace

} // namespace talvera::test
