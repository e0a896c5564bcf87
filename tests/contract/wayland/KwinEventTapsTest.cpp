// SPDX-License-Identifier: MIT
// Chords in a Plasma session, with a program that has the focus.
#include "linux/wayland/kwin/KwinEventTaps.h"
#include "FakeKeyboardLayout.h"
#include "KeysInWindow.h"
#include "PrintQt.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace talvera::test {

namespace {

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;
constexpr KeyChord controlOptionSpace{controlOption, VirtualKey::Space};

QDBusMessage askShortcuts(const QString& method, const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall("org.kde.kglobalaccel", "/kglobalaccel",
                                               "org.kde.KGlobalAccel", method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

/// Another program's shortcut on Ctrl+Alt+Space, or without a key.
void giveToAnother(bool hasKey) {
    const QStringList action{"other", "theirs", "Other", "Theirs"};
    const QList<int> keys =
        hasKey ? QList<int>{int(Qt::CTRL) | int(Qt::ALT) | int(Qt::Key_Space)} : QList<int>{};
    askShortcuts("doRegister", {action});
    askShortcuts("setShortcut", {action, QVariant::fromValue(keys), 6U});
    if (!hasKey)
        askShortcuts("unregister", {"other", "theirs"});
}

qint64 kwinProcess() {
    auto call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                               "GetConnectionUnixProcessID");
    call.setArguments({"org.kde.KWin"});
    return QDBusConnection::sessionBus().call(call).arguments().value(0).toLongLong();
}

class KwinEventTapsTest : public testing::Test {
protected:
    /// Whether the owner comes to have been told this.
    static testing::AssertionResult isTold(TapOwner& told, const QStringList& expected) {
        if (KeysInWindow::becomes([&] { return told.told == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << told.told.join(' ').toStdString();
    }

    FakeKeyboardLayout layout{{{VirtualKey::Space, " "}, {VirtualKey::A, "a"}}};
    KwinEventTaps taps{layout, std::make_shared<KwinGuard>()};
    KeysInWindow keys;
    TapOwner owner{taps};
    const std::vector<XKeycode> chord{Key::leftControl, Key::leftAlt, Key::space};
};

TEST_F(KwinEventTapsTest, chord_isToldDownAndUpAndKeptFromTheProgram) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    keys.press(chord);
    EXPECT_TRUE(isTold(owner, {"+49"}));
    EXPECT_EQ(owner.lastFlags, controlOption);
    keys.release({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    const auto reached = keys.takeKeys();
    EXPECT_FALSE(reached.contains("+65")) << reached.join(' ').toStdString();
    EXPECT_FALSE(owner.tap->isBroken());
}

TEST_F(KwinEventTapsTest, modifierLetGoFirst_endsThePressOnce) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    for (int i = 0; i < 3; ++i) {
        owner.told.clear();
        keys.press(chord);
        EXPECT_TRUE(isTold(owner, {"+49"}));
        keys.release({Key::leftControl, Key::space, Key::leftAlt});
        EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    }
}

TEST_F(KwinEventTapsTest, repeats_areNoPresses) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    keys.press(chord);
    ASSERT_TRUE(isTold(owner, {"+49"}));
    QElapsedTimer held; // until KWin has repeated it: after 0.6 s, and then 25 times a second
    held.start();
    KeysInWindow::becomes([&] { return held.hasExpired(1000); });
    keys.release({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(KwinEventTapsTest, locks_changeNothing) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    for (const auto lock : {Key::capsLock, Key::numLock}) {
        owner.told.clear();
        keys.tap({lock});
        keys.tap(chord);
        keys.tap({lock});
        EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    }
}

TEST_F(KwinEventTapsTest, singleKey_isAChordWithoutModifiers) {
    ASSERT_EQ(owner.tap->watchChord({0, VirtualKey::F8}), WatchResult::Watching);
    keys.tap({Key::f8});
    EXPECT_TRUE(isTold(owner, {"+100", "-100"}));
    EXPECT_FALSE(keys.takeKeys().contains("+74")); // KWin 5.27 lets the window have the end
}

TEST_F(KwinEventTapsTest, letterOfTheLayout_isHeard) {
    ASSERT_EQ(owner.tap->watchChord({controlOption | KeyFlag::Shift, VirtualKey::A}), WatchResult::Watching);
    keys.tap({Key::leftControl, Key::leftAlt, Key::leftShift, Key::a});
    EXPECT_TRUE(isTold(owner, {"+0", "-0"}));
}

TEST_F(KwinEventTapsTest, stroke_isToldByItsKeyDownAlone) {
    ASSERT_EQ(owner.tap->watchStroke(controlOptionSpace), WatchResult::Watching);
    keys.tap(chord);
    ASSERT_TRUE(isTold(owner, {"+49"}));
    keys.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "+49"}));
}

TEST_F(KwinEventTapsTest, keyAlone_isRefusedAndStaysTheProgramsOwn) {
    EXPECT_FALSE(taps.hearsKeysAlone());
    EXPECT_EQ(owner.tap->watchKey(VirtualKey::RightCommand), WatchResult::ChordsOnly);
    keys.tap({Key::rightControl});
    EXPECT_EQ(keys.takeKeys(), (QStringList{"+105", "-105"}));
}

TEST_F(KwinEventTapsTest, whatCantBeAShortcut_isUnavailable) {
    EXPECT_EQ(owner.tap->watchChord({controlOption, VirtualKey{200}}), WatchResult::Unavailable);
    EXPECT_EQ(owner.tap->watchChord({KeyFlag::Fn, VirtualKey::Space}), WatchResult::Unavailable);
    EXPECT_EQ(owner.tap->watchChord({KeyFlag::Control, VirtualKey::Shift}), WatchResult::Unavailable);
}

TEST_F(KwinEventTapsTest, chordThatIsNotWatchedAnyMore_isTheProgramsAgainAndLeavesNothingBehind) {
    for (const auto& giveUp :
         {std::function([&] { owner.tap->watchNothing(); }),
          std::function([&] { owner.tap->setEnabled(false); }), std::function([&] { owner.tap.reset(); })}) {
        owner.told.clear();
        ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
        giveUp();
        EXPECT_TRUE(KeysInWindow::becomes([&] {
            keys.tap(chord);
            return keys.takeKeys().contains("+65");
        }));
        if (owner.tap)
            owner.tap->setEnabled(true);
    }
    EXPECT_TRUE(KeysInWindow::becomes([] {
        QFile file(qEnvironmentVariable("XDG_CONFIG_HOME") + "/kglobalshortcutsrc");
        return file.open(QIODevice::ReadOnly) && !file.readAll().contains("talvera");
    }));
}

TEST_F(KwinEventTapsTest, twoTapsOnOneChord_theNewestSeesItFirst) {
    TapOwner newer(taps);
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    ASSERT_EQ(newer.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    keys.tap(chord);
    EXPECT_TRUE(isTold(newer, {"+49", "-49"}));
    newer.tap.reset();
    keys.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(KwinEventTapsTest, chordOfAnotherProgram_isTaken) {
    giveToAnother(true);
    EXPECT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::ChordTaken);
    keys.tap(chord);
    EXPECT_EQ(keys.takeKeys().count("+65"), 0);
    EXPECT_EQ(owner.told, QStringList());
    giveToAnother(false);
    EXPECT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
}

TEST_F(KwinEventTapsTest, chordThatTheUserChangesInTheSettings_countsAsTheyHaveIt) {
    std::vector<WatchResult> changes;
    owner.tap->onResultChange = [&](WatchResult result) { changes.push_back(result); };
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    const QStringList action{"talvera", "chord-c0000-49", "Talvera", "Talvera"};
    askShortcuts("setForeignShortcut", {action, QVariant::fromValue(QList<int>{int(Qt::Key_F8)})});
    EXPECT_TRUE(KeysInWindow::becomes([&] {
        keys.tap({Key::f8});
        return !keys.takeKeys().contains("+74");
    }));
    EXPECT_TRUE(KeysInWindow::becomes([&] { return owner.told.contains("-49"); }));
    EXPECT_TRUE(changes.empty());
    askShortcuts("setForeignShortcut", {action, QVariant::fromValue(QList<int>{})});
    EXPECT_TRUE(KeysInWindow::becomes([&] { return changes == std::vector{WatchResult::ChordTaken}; }));
}

TEST_F(KwinEventTapsTest, hungKwin_holdsUpNobody) {
    ::kill(static_cast<pid_t>(kwinProcess()), SIGSTOP);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Unavailable);
    const auto taken = time.elapsed();
    ::kill(static_cast<pid_t>(kwinProcess()), SIGCONT);
    EXPECT_LT(taken, 900);
    EXPECT_TRUE(KeysInWindow::becomes([&] {
        keys.tap(chord);
        keys.takeKeys();
        return owner.told.contains("-49");
    }));
}

TEST_F(KwinEventTapsTest, chordOfAProcessThatIsKilled_isTheProgramsAgain) {
    for (const bool isHeld : {false, true}) {
        Peer agent(TALVERA_KWIN_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(agent, "ready"));
        keys.press(chord);
        ASSERT_TRUE(says(agent, "start"));
        if (!isHeld)
            keys.release(chord);
        agent.signal(SIGKILL);
        if (isHeld)
            keys.release(chord);
        EXPECT_TRUE(KeysInWindow::becomes([&] {
            keys.tap(chord);
            return keys.takeKeys().contains("+65");
        }));
    }
}

TEST_F(KwinEventTapsTest, processStartedRightAfterAnotherWasKilled_hasTheChord) {
    for (int i = 0; i < 3; ++i) {
        Peer killed(TALVERA_KWIN_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(killed, "ready"));
        killed.signal(SIGKILL);
        Peer agent(TALVERA_KWIN_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(agent, "ready"));
        keys.tap(chord);
        EXPECT_TRUE(says(agent, "start"));
        EXPECT_TRUE(says(agent, "end"));
    }
}

} // namespace

} // namespace talvera::test
