// SPDX-License-Identifier: MIT
// Sessions that lack something: the window manager, an extension, the server itself. And programs of other
// machines.
#include "WindowPeer.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/EwmhWorkspace.h"
#include "linux/x11/windows/X11SessionAccess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using namespace talvera;
using test::eventually;
using test::Peer;
using test::WindowPeer;

namespace {

/// A server of its own without a window manager: the test plays it.
class BareServer : public testing::Test {
protected:
    void startServer(const QStringList& options) {
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        server = std::make_unique<Peer>("Xvfb",
                                        QStringList{"-displayfd", QString::number(ready[1]), "-screen", "0",
                                                    "640x480x24", "-ac", "-noreset", "-nolisten", "tcp"} +
                                            options);
        ::close(ready[1]);
        QByteArray number(16, 0);
        const auto size = ::read(ready[0], number.data(), std::size_t(number.size()));
        ::close(ready[0]);
        ASSERT_GT(size, 0) << "Xvfb did not start";
        display = ":" + number.left(qsizetype(size)).trimmed();
        former = qgetenv("DISPLAY");
        qputenv("DISPLAY", display);
        connection = X11Server().connect();
        ASSERT_FALSE(connection->isBroken());
    }
    ~BareServer() override {
        if (!former.isEmpty())
            qputenv("DISPLAY", former);
    }

    void setWindows(const char* property, std::vector<xcb_window_t> windows,
                    xcb_window_t of = XCB_WINDOW_NONE) {
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, of ? of : connection->root(),
                            connection->atom(property), XCB_ATOM_WINDOW, 32, std::uint32_t(windows.size()),
                            windows.data());
        ASSERT_TRUE(connection->roundTrip());
    }
    void play(xcb_window_t window) {
        setWindows("_NET_ACTIVE_WINDOW", {window});
        setWindows("_NET_CLIENT_LIST", {window});
    }

    std::unique_ptr<Peer> server;
    QByteArray display;
    QByteArray former;
    std::unique_ptr<X11Connection> connection;
    DesktopEntryCatalog none{{}, {}};
};

TEST_F(BareServer, serverThatKnowsNoProcesses_goesByTheWindowsWord) {
    startServer({"-extension", "X-Resource"});
    EwmhWorkspace workspace(*connection, none);
    WindowPeer peer({"class=Local", "pid=" + QString::number(::getppid())});
    play(peer.window);
    EXPECT_EQ(workspace.frontmostApplication()->pid, ::getppid());
}

TEST_F(BareServer, programOfAnotherMachine_hasOneNegativeNumberUntilItsWindowsAreGone) {
    startServer({"-extension", "X-Resource"}); // its process is unknown to everybody, as if it were far away
    EwmhWorkspace workspace(*connection, none);
    WindowPeer first({"class=Remote"});
    WindowPeer second({"class=Remote"});
    play(first.window);
    const auto firstPid = workspace.frontmostApplication()->pid;
    EXPECT_LT(firstPid, 0);
    first.tell("second");
    const auto sibling = xcb_window_t(first.readUntil("mapped ").toUInt());
    setWindows("_NET_ACTIVE_WINDOW", {sibling});
    EXPECT_EQ(workspace.frontmostApplication()->pid, firstPid) << "the same for all its windows";
    setWindows("_NET_ACTIVE_WINDOW", {second.window});
    EXPECT_NE(workspace.frontmostApplication()->pid, firstPid);

    setWindows("_NET_CLIENT_LIST", {first.window, second.window});
    EXPECT_TRUE(workspace.runningApplication(firstPid));
    setWindows("_NET_CLIENT_LIST", {second.window});
    EXPECT_EQ(workspace.runningApplication(firstPid), std::nullopt);
}

TEST_F(BareServer, windowManagerWithoutActivation_refusesAndIsReported) {
    startServer({});
    EwmhWorkspace workspace(*connection, none);
    WindowPeer peer({"class=Local"});
    play(peer.window);
    EXPECT_TRUE(workspace.frontmostApplication());
    EXPECT_FALSE(workspace.activate(peer.pid()));
    EXPECT_EQ(X11SessionAccess(*connection).lacks(), std::vector{SessionLack::ActiveWindow});
}

TEST_F(BareServer, activation_isAskedForAsTheUsersWishAtTheServersTime) {
    startServer({});
    const auto manager = X11Server().connect();
    const auto check = xcb_generate_id(manager->get());
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_create_window(manager->get(), XCB_COPY_FROM_PARENT, check, manager->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_window_attributes(manager->get(), manager->root(), XCB_CW_EVENT_MASK, &events);
    ASSERT_TRUE(manager->roundTrip());
    setWindows("_NET_SUPPORTING_WM_CHECK", {check});
    setWindows("_NET_SUPPORTING_WM_CHECK", {check}, check);
    setWindows("_NET_SUPPORTED", {connection->atom("_NET_ACTIVE_WINDOW")});
    EwmhWorkspace workspace(*connection, none);
    WindowPeer peer({"class=Local"});
    play(peer.window);

    ASSERT_TRUE(workspace.activate(peer.pid()));
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    XcbEvent event;
    do {
        event = manager->waitForEvent(deadline);
        ASSERT_TRUE(event) << "no request came";
    } while ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE ||
             reinterpret_cast<xcb_client_message_event_t&>(*event).data.data32[1] == XCB_CURRENT_TIME);
    const auto& message = reinterpret_cast<xcb_client_message_event_t&>(*event);
    EXPECT_EQ(message.window, peer.window);
    EXPECT_EQ(message.type, connection->atom("_NET_ACTIVE_WINDOW"));
    EXPECT_EQ(message.data.data32[0], 2U);
}

TEST_F(BareServer, serverWithoutXTest_isReported) {
    startServer({"-extension", "XTEST"});
    const auto lacks = X11SessionAccess(*connection).lacks();
    EXPECT_NE(std::find(lacks.begin(), lacks.end(), SessionLack::KeyPosting), lacks.end());
}

TEST_F(BareServer, panelInFront_isNobody) {
    startServer({});
    EwmhWorkspace workspace(*connection, none);
    WindowPeer panel({"class=Panel", "type=DOCK"});
    play(panel.window);
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
}

TEST_F(BareServer, activeWindowThatIsGone_isNobody) {
    startServer({});
    EwmhWorkspace workspace(*connection, none);
    setWindows("_NET_ACTIVE_WINDOW", {0x00FFFFFF});
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    setWindows("_NET_ACTIVE_WINDOW", {connection->root()});
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    setWindows("_NET_ACTIVE_WINDOW", {});
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
}

TEST_F(BareServer, hungServer_isGivenUpSoonAndAskedAgainLater) {
    startServer({});
    EwmhWorkspace workspace(*connection, none);
    WindowPeer peer({"class=Local"});
    play(peer.window);
    ASSERT_TRUE(workspace.frontmostApplication());
    server->signal(SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, X11Connection::answerTimeout * 2);
    server->signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return workspace.frontmostApplication().has_value(); }));
}

TEST_F(BareServer, lostServer_leavesUsAliveWithoutApplications) {
    startServer({});
    EwmhWorkspace workspace(*connection, none);
    X11SessionAccess access(*connection);
    server->signal(SIGKILL);
    EXPECT_TRUE(eventually([&] { return access.lacks() == std::vector{SessionLack::KnownSession}; }));
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_FALSE(workspace.activate(::getpid()));
}

} // namespace
