// SPDX-License-Identifier: MIT
// The windows of a GNOME session, of Wayland and of X programs.
#include "../focus/Peer.h"
#include "../focus/WorkspaceContract.h"
#include "GnomeDesk.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>

namespace talvera::test {

namespace {

class GnomeSession {
public:
    Workspace& workspace() { return m_desk.workspace; }

    /// The user's own way there, a click, has the same effect as the Shell's own call.
    void bringToFront(pid_t pid) { m_desk.workspace.activate(pid); }
    void quit(pid_t pid) { m_peers.erase(pid); }
    static bool becomes(const std::function<bool()>& condition) { return GnomeDesk::becomes(condition); }

protected:
    pid_t started(std::unique_ptr<Peer> peer) {
        const auto pid = peer->pid();
        m_peers[pid] = std::move(peer);
        if (!becomes(
                [&] { return workspace().frontmostApplication().value_or(RunningApplication()).pid == pid; }))
            throw std::runtime_error("the window doesn't come");
        return pid;
    }

private:
    GnomeDesk m_desk;
    std::map<pid_t, std::unique_ptr<Peer>> m_peers;
};

class WithWaylandPrograms : public GnomeSession {
public:
    pid_t startInFront(const QString& name) {
        return started(std::make_unique<Peer>("/usr/bin/python3", QStringList{TALVERA_WAYLAND_WINDOW, name}));
    }
};

class WithXPrograms : public GnomeSession {
public:
    pid_t startInFront(const QString& name) {
        return started(std::make_unique<Peer>(TALVERA_WINDOW_PEER,
                                              QStringList{"instance=" + name.toLower(), "class=" + name}));
    }
};

using Sessions = testing::Types<WithWaylandPrograms, WithXPrograms>;
INSTANTIATE_TYPED_TEST_SUITE_P(OnGnome, WorkspaceContract, Sessions);

} // namespace

} // namespace talvera::test
