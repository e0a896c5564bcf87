// SPDX-License-Identifier: MIT
#include "WorkspaceContract.h"
#include "FakeWorkspace.h"
#include "Peer.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/EwmhWorkspace.h"

#include <gtest/gtest.h>

#include <map>

namespace talvera::test {

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
    FakeWorkspace m_workspace;
    pid_t m_lastPid = 1000;
};

class X11Session {
public:
    Workspace& workspace() { return m_workspace; }

    pid_t startInFront(const QString& name) {
        auto peer = std::make_unique<Peer>(TALVERA_WINDOW_PEER,
                                           QStringList{"instance=" + name.toLower(), "class=" + name});
        peer->readUntil("mapped ");
        const auto pid = peer->pid();
        m_peers[pid] = std::move(peer);
        bringToFront(pid);
        return pid;
    }
    void bringToFront(pid_t pid) { m_peers.at(pid)->tell("activate"); }
    void quit(pid_t pid) { m_peers.erase(pid); }
    static bool becomes(const std::function<bool()>& condition) { return eventually(condition); }

private:
    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    DesktopEntryCatalog m_installed{{}, {}};
    EwmhWorkspace m_workspace{*m_connection, m_installed};
    std::map<pid_t, std::unique_ptr<Peer>> m_peers;
};

using Sessions = testing::Types<FakeSession, X11Session>;
INSTANTIATE_TYPED_TEST_SUITE_P(In, WorkspaceContract, Sessions);

} // namespace

} // namespace talvera::test
