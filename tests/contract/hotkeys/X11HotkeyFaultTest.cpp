// SPDX-License-Identifier: MIT
// What happens to the user's keyboard when things go wrong with us.
#include "HotkeyOnX11.h"

#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include <sys/socket.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class X11HotkeyFault : public HotkeyOnX11 {
protected:
    bool isDown(XKeycode key) {
        auto& connection = keyboard.window().connection();
        const auto keys = connection.reply<xcb_query_keymap_reply_t>(xcb_query_keymap(connection.get()));
        return (keys->keys[indexOf(key) / 8] >> (indexOf(key) % 8) & 1) != 0;
    }

    void expectKeyboardIsWhole() {
        keyboard.window().takeKeys();
        for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
            EXPECT_FALSE(isDown(key)) << indexOf(key);
        tap(Key::a);
        tapChord();
        EXPECT_EQ(keyboard.window().takeKeys(),
                  (Keys{"+38", "-38", "+37", "+64", "+65", "-65", "-64", "-37"}));
    }

    static QString line(QProcess& process) {
        while (!process.canReadLine() && process.waitForReadyRead(-1)) {
        }
        return QString::fromUtf8(process.readLine()).trimmed();
    }

    void start(QProcess& agent) {
        agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        agent.start(QCoreApplication::applicationDirPath() + QStringLiteral("/hotkey-agent"), {});
        ASSERT_EQ(line(agent), "ready");
    }
};

TEST_F(X11HotkeyFault, mainThreadStalledFor5Seconds_leavesTheKeyboardAlive) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    keyboard.window().takeKeys();

    QElapsedTimer stall;
    stall.start();
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    tap(Key::a);
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"-64", "-37", "+38", "-38"}));
    // The main thread is here, and does not listen. Then the chord is the application's.
    while (!keyboard.canBeGrabbed(Key::space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_LT(stall.elapsed(), 4000) << "a second, and what a busy machine adds";
    expectKeyboardIsWhole();
    std::this_thread::sleep_for(std::chrono::milliseconds(std::max<qint64>(0, 5000 - stall.elapsed())));
    expectKeyboardIsWhole();

    EXPECT_EQ(takeCalls(), Calls{"end"}); // late, but never lost
    tapChord();
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+37", "+64", "-64", "-37"}));
}

TEST_F(X11HotkeyFault, agentKilledWithTheChordHeld_leavesTheKeyboardWhole) {
    QProcess agent;
    start(agent);
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    ASSERT_EQ(line(agent), "start");
    agent.kill();
    ASSERT_TRUE(agent.waitForFinished(-1));
    ASSERT_EQ(agent.exitStatus(), QProcess::CrashExit);
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    expectKeyboardIsWhole();
}

TEST_F(X11HotkeyFault, agentStoppedWithTheChordHeld_letsTheOtherKeysThrough) {
    QProcess agent;
    start(agent);
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    ASSERT_EQ(line(agent), "start");
    ::kill(static_cast<pid_t>(agent.processId()), SIGSTOP);
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    keyboard.window().takeKeys();
    tap(Key::a);
    tapChord(); // stays the agent's, but does no harm
    tap(Key::a);
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+38", "-38", "+37", "+64", "-64", "-37", "+38", "-38"}));
    ::kill(static_cast<pid_t>(agent.processId()), SIGCONT);
    EXPECT_EQ(line(agent), "end");
    agent.kill();
    ASSERT_TRUE(agent.waitForFinished(-1));
    expectKeyboardIsWhole();
}

TEST_F(X11HotkeyFault, agentKilledWithTheToggleHeld_leavesTheKeyboardWhole) {
    QProcess agent;
    start(agent);
    pressAll(toggleKeys);
    ASSERT_EQ(line(agent), "toggle");
    agent.kill();
    ASSERT_TRUE(agent.waitForFinished(-1));
    releaseAll(toggleKeys);
    expectKeyboardIsWhole();
    keyboard.window().takeKeys();
    tapAll(toggleKeys);
    EXPECT_EQ(keyboard.window().takeKeys().size(), 2 * toggleKeys.size());
}

TEST_F(X11HotkeyFault, agentStoppedWithTheToggleHeld_letsAllOtherKeysThrough) {
    QProcess agent;
    start(agent);
    pressAll(toggleKeys);
    ASSERT_EQ(line(agent), "toggle");
    ::kill(static_cast<pid_t>(agent.processId()), SIGSTOP);
    releaseAll(toggleKeys);
    keyboard.window().takeKeys();
    tap(Key::a);
    tapAll(toggleKeys);
    tap(Key::a);
    const auto reached = keyboard.window().takeKeys();
    EXPECT_EQ(std::ranges::count(reached, "+38"), 2);
    EXPECT_EQ(std::ranges::count(reached, "-38"), 2);
    agent.kill();
    ASSERT_TRUE(agent.waitForFinished(-1));
    expectKeyboardIsWhole();
}

TEST_F(X11HotkeyFault, noServer_isARefusedTap) {
    X11EventTapFactory nowhere(keyboard.actor(), X11Server("unix:/nowhere"));
    HotkeyManager refusedHotkey(keyboard.actor(), nowhere, console);
    refusedHotkey.install();
    EXPECT_EQ(refusedHotkey.eventTap(), nullptr);
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: failed to create event tap — check Accessibility "
                                            "& Input Monitoring permissions."});
}

/// The sockets that this process has open.
std::set<int> sockets() {
    std::set<int> sockets;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the one that lists the directory
        if (std::filesystem::read_symlink(entry, gone).string().starts_with("socket:"))
            sockets.insert(std::stoi(entry.path().filename()));
    }
    return sockets;
}

TEST_F(X11HotkeyFault, connectionOfTheTapLostAlone_isReplacedByTheNextInstall) {
    X11EventTapFactory taps(keyboard.actor(), X11Server());
    HotkeyManager other(keyboard.actor(), taps, console);
    other.onPressStart = [this] { calls.emplace_back("start"); };
    const auto before = sockets();
    other.install();
    ASSERT_NE(other.eventTap(), nullptr);
    for (const int socket : sockets()) {
        if (!before.contains(socket))
            ::shutdown(socket, SHUT_RDWR);
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (other.eventTap() != nullptr)
        ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "nobody notices";
    other.setBinding(HotkeyBinding()); // does no harm

    other.install();
    ASSERT_NE(other.eventTap(), nullptr);
    tapChord();
    keyboard.run([this] { return !calls.empty(); });
    EXPECT_EQ(calls, Calls{"start"});
}

TEST_F(X11HotkeyFault, serverThatGoesAway_takesNobodyWithIt) {
    QProcess server;
    server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                          QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    const auto display = ":" + line(server).toStdString();
    X11EventTapFactory taps(keyboard.actor(), X11Server(display));
    const auto eventTap = taps.create([](const KeyEvent&) { return Verdict::Pass; });
    ASSERT_NE(eventTap, nullptr);
    eventTap->setEnabled(true);
    EXPECT_EQ(eventTap->watchChord({0xC0000, VirtualKey::Space}), WatchResult::Watching);
    server.kill();
    ASSERT_TRUE(server.waitForFinished(-1));
    while (eventTap->watchChord({0xC0000, VirtualKey::Space}) != WatchResult::Unavailable)
        std::this_thread::yield();
    EXPECT_EQ(eventTap->watchKey(VirtualKey::RightCommand), WatchResult::Unavailable);
}

} // namespace
