// SPDX-License-Identifier: MIT
// Windows as they come in real sessions: nameless, hostile, of the desktop itself.
#include "linux/x11/windows/EwmhWorkspace.h"
#include "WindowPeer.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/EwmhWindows.h"
#include "linux/x11/windows/X11SessionAccess.h"
#include "shortestOf.h"

#include <QDir>
#include <QSaveFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera;
using test::eventually;
using test::WindowPeer;

namespace {

class EwmhWorkspaceTest : public testing::Test {
protected:
    std::unique_ptr<X11Connection> connection = X11Server().connect();
    QTemporaryDir applications;
    std::optional<DesktopEntryCatalog> installed;
    std::optional<EwmhWorkspace> workspace;
    EwmhWindows windows{*connection};

    /// Installs an application: its file is whole from the start, as package managers do it.
    void install(const QString& id, const QByteArray& rest) {
        QSaveFile file(applications.filePath(id + ".desktop"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + rest);
        ASSERT_TRUE(file.commit());
    }
    void start(const QStringList& languages = {}) {
        installed.emplace(QStringList{applications.path()}, languages);
        workspace.emplace(*connection, *installed);
    }

    bool isActive(const WindowPeer& peer) {
        return eventually([&] { return windows.activeWindow() == peer.window; });
    }

    /// The application in front once `peer`'s window is the active one.
    std::optional<RunningApplication> frontmost(const WindowPeer& peer) {
        if (!workspace)
            start();
        EXPECT_TRUE(isActive(peer));
        return workspace->frontmostApplication();
    }

    /// The same, once what is installed has been read, which takes a moment.
    std::optional<RunningApplication> frontmostOnceItIs(const WindowPeer& peer,
                                                        const RunningApplication& expected) {
        auto frontmost = this->frontmost(peer);
        eventually([&] { return (frontmost = workspace->frontmostApplication()) == expected; });
        return frontmost;
    }
};

TEST_F(EwmhWorkspaceTest, windowWithoutProcessId_goesByTheProcessThatTheServerKnows) {
    WindowPeer peer({"class=Nopid"});
    EXPECT_EQ(frontmost(peer), (RunningApplication{peer.pid(), "Nopid", "Nopid"}));
}

TEST_F(EwmhWorkspaceTest, windowThatLiesAboutItsProcess_isNotBelieved) {
    WindowPeer peer({"class=Liar", "pid=1"});
    EXPECT_EQ(frontmost(peer)->pid, peer.pid());
}

TEST_F(EwmhWorkspaceTest, windowThatTellsNothing_hasAProcessAndNoNames) {
    WindowPeer peer({});
    EXPECT_EQ(frontmost(peer), (RunningApplication{peer.pid(), std::nullopt, std::nullopt}));
}

TEST_F(EwmhWorkspaceTest, hostileClassAndTitle_endInAPlainName) {
    WindowPeer peer({"class=  Evil\x1b[2J\n\xE2\x80\xAE"
                     "eman\t",
                     "title=\x07\xE2\x80\xAE\n"});
    EXPECT_EQ(frontmost(peer), (RunningApplication{peer.pid(), "Evil [2J eman", "Evil [2J eman"}));
}

TEST_F(EwmhWorkspaceTest, titleOfAMegabyte_costsNothing) {
    WindowPeer peer({"class=Talker", "title=0123456789abcdef", "titleSize=15000"});
    EXPECT_EQ(frontmost(peer)->localizedName, "Talker");
}

TEST_F(EwmhWorkspaceTest, longClass_isCut) {
    WindowPeer peer({"class=" + QString(5000, QChar('x'))});
    EXPECT_EQ(frontmost(peer)->localizedName, QString(100, QChar('x')));
}

TEST_F(EwmhWorkspaceTest, installedApplication_goesByItsDesktopFileInTheSessionsLanguage) {
    install("org.example.Writer", "Name=Writer\nName[de]=Schreiber\nStartupWMClass=writer-window\n");
    start({"de_AT", "de"});
    WindowPeer peer({"instance=x", "class=Writer-Window"});
    const RunningApplication writer{peer.pid(), "org.example.Writer", "Schreiber"};
    EXPECT_EQ(frontmostOnceItIs(peer, writer), writer);
}

TEST_F(EwmhWorkspaceTest, applicationThatSaysItsId_goesByItInstalledOrNot) {
    install("org.example.Writer", "Name=Writer\n");
    start();
    {
        WindowPeer peer({"class=Something", "gtk=org.example.Writer"});
        const RunningApplication writer{peer.pid(), "org.example.Writer", "Writer"};
        EXPECT_EQ(frontmostOnceItIs(peer, writer), writer);
    }
    WindowPeer peer({"class=Something", "gtk=org.example.Unknown"});
    EXPECT_EQ(frontmost(peer), (RunningApplication{peer.pid(), "org.example.Unknown", "Something"}));
}

TEST_F(EwmhWorkspaceTest, applicationInstalledMeanwhile_isFoundSoon) {
    start();
    WindowPeer peer({"class=Latecomer"});
    EXPECT_EQ(frontmost(peer)->bundleID, "Latecomer");
    install("latecomer", "Name=Late One\n");
    WindowPeer other({"instance=other", "class=Latecomer"});
    ASSERT_TRUE(isActive(other));
    EXPECT_TRUE(eventually([&] { return workspace->frontmostApplication()->localizedName == "Late One"; }));
}

TEST_F(EwmhWorkspaceTest, desktopBackgroundInFront_isNobody) {
    WindowPeer background({"class=Desktop", "type=DESKTOP"});
    EXPECT_EQ(frontmost(background), std::nullopt);
}

TEST_F(EwmhWorkspaceTest, lockedScreen_hasNobodyInFrontUntilItIsUnlocked) {
    WindowPeer editor({"class=Editor"});
    ASSERT_EQ(frontmost(editor)->bundleID, "Editor");
    {
        WindowPeer locker({"class=Locker", "override=1280x800"});
        EXPECT_EQ(workspace->frontmostApplication(), std::nullopt);
    }
    EXPECT_TRUE(eventually([&] { return workspace->frontmostApplication().has_value(); }));
}

TEST_F(EwmhWorkspaceTest, overlayThatLetsTheInputThrough_locksNothing) {
    WindowPeer editor({"class=Editor"});
    ASSERT_EQ(frontmost(editor)->bundleID, "Editor");
    WindowPeer overlay({"class=Overlay", "override=1280x800", "input=none"});
    EXPECT_TRUE(workspace->frontmostApplication());
}

TEST_F(EwmhWorkspaceTest, menuOverASmallWindow_locksNothing) {
    WindowPeer editor({"class=Editor"});
    ASSERT_EQ(frontmost(editor)->bundleID, "Editor");
    WindowPeer menu({"class=Menu", "override=500x390"});
    EXPECT_TRUE(workspace->frontmostApplication());
}

TEST_F(EwmhWorkspaceTest, activation_skipsTheProcesssPartsOfTheDesktop) {
    start();
    WindowPeer background({"class=Desktop", "type=DESKTOP"});
    EXPECT_FALSE(workspace->activate(background.pid()));
}

TEST_F(EwmhWorkspaceTest, activation_goesToTheMostRecentlyActiveWindowNotTheTopmost) {
    start();
    WindowPeer editor({"class=Editor"});
    const auto second = [&] {
        editor.tell("second");
        return xcb_window_t(editor.readUntil("mapped ").toUInt());
    }();
    ASSERT_TRUE(eventually([&] { return windows.activeWindow() == second; }));
    ASSERT_TRUE(workspace->frontmostApplication());
    editor.tell("activate");
    ASSERT_TRUE(isActive(editor));
    ASSERT_TRUE(workspace->frontmostApplication());
    editor.tell("lower");
    ASSERT_TRUE(eventually([&] { return windows.managedWindows().front() == second; }));
    WindowPeer other({"class=Other"});
    ASSERT_TRUE(isActive(other));

    EXPECT_TRUE(workspace->activate(editor.pid()));
    EXPECT_TRUE(isActive(editor));
}

TEST_F(EwmhWorkspaceTest, processWithoutAWindow_runsButCantBeActivated) {
    start();
    EXPECT_TRUE(workspace->runningApplication(::getpid()));
    EXPECT_FALSE(workspace->activate(::getpid()));
}

TEST_F(EwmhWorkspaceTest, deadProcessThatNobodyHasBuriedYet_countsAsGone) {
    start();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    EXPECT_TRUE(eventually([&] { return !workspace->runningApplication(child); }));
    ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), child) << "it was there to be buried";
}

TEST_F(EwmhWorkspaceTest, impossibleProcesses_areNotThere) {
    start();
    EXPECT_EQ(workspace->runningApplication(0), std::nullopt);
    EXPECT_EQ(workspace->runningApplication(-1), std::nullopt);
    EXPECT_EQ(workspace->runningApplication(0x7FFFFFFF), std::nullopt);
    EXPECT_FALSE(workspace->activate(0));
}

TEST_F(EwmhWorkspaceTest, ownWindowInFront_hasOurOwnIdentifierWhateverItsClass) {
    start();
    const auto own = X11Server().connect();
    const auto window = xcb_generate_id(own->get());
    xcb_create_window(own->get(), XCB_COPY_FROM_PARENT, window, own->root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(own->get(), window);
    own->flush();
    ASSERT_TRUE(eventually([&] { return windows.activeWindow() == window; }));
    const auto frontmost = workspace->frontmostApplication();
    ASSERT_TRUE(frontmost);
    EXPECT_EQ(frontmost->pid, ::getpid());
    EXPECT_EQ(frontmost->bundleID, workspace->ownBundleID());
}

TEST_F(EwmhWorkspaceTest, question_takesLessThanAMillisecond) {
    install("editor", "Name=Editor\n");
    WindowPeer peer({"class=Editor"});
    frontmost(peer);
    const auto best = test::shortestOf(50, [&] { workspace->frontmostApplication(); });
    RecordProperty("microseconds", int(std::chrono::duration_cast<std::chrono::microseconds>(best).count()));
    EXPECT_LT(best, std::chrono::milliseconds(1));
}

TEST(EwmhWorkspaceWithoutServer, session_hasNoApplicationsAndIsNoneToWorkIn) {
    const auto connection = X11Server(":4711").connect();
    DesktopEntryCatalog none({}, {});
    EwmhWorkspace empty(*connection, none);
    EXPECT_EQ(empty.frontmostApplication(), std::nullopt);
    EXPECT_TRUE(empty.runningApplication(::getpid()));
    EXPECT_FALSE(empty.activate(::getpid()));
    X11SessionAccess access(*connection);
    EXPECT_EQ(access.lacks(), std::vector{SessionLack::KnownSession});
    EXPECT_FALSE(access.canWatchKeys());
}

} // namespace
