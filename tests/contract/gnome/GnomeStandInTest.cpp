// SPDX-License-Identifier: MIT
// What we make of what our extension of GNOME Shell tells, however it comes and goes, and how long we wait
// for it.
#include "PrintQt.h"
#include "ShellStandIn.h"
#include "eventually.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/wayland/gnome/GnomeEventTaps.h"
#include "linux/wayland/gnome/GnomeKeyEventPoster.h"
#include "linux/wayland/gnome/GnomeSessionAccess.h"
#include "linux/wayland/gnome/GnomeWorkspace.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace talvera::test {

namespace {

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;
constexpr KeyChord controlOptionSpace{controlOption, VirtualKey::Space};
const auto space = QStringLiteral("<Control><Alt>0x41");
const QStringList allSpaces{space, "<Shift>" + space, "<Control><Alt><Super>0x41",
                            "<Shift><Control><Alt><Super>0x41"};

QStringList grabsOf(const QStringList& accelerators) {
    QStringList calls;
    for (const auto& accelerator : accelerators)
        calls << "Grab " + accelerator;
    calls.sort();
    return calls;
}

class GnomeStandInTest : public testing::Test {
protected:
    bool isFocused(std::uint64_t window, bool takesText = true) {
        return eventually(
            [&] { return view->focus().window == window && view->focus().takesText == takesText; });
    }
    bool becomes(const std::function<bool()>& condition) { return eventually(condition); }

    /// What the Shell is told next, in whichever order.
    bool isToldAll(const QStringList& calls) {
        QStringList told;
        return eventually([&] {
            told += shell.takeCalls();
            told.sort();
            return told == calls;
        });
    }

    ShellStandIn shell;
    std::shared_ptr<const ShellBus> bus = std::make_shared<const ShellBus>(shell.address());
    std::shared_ptr<ShellView> view = std::make_shared<ShellView>(bus);
};

TEST_F(GnomeStandInTest, whoIsThere_isKnownAtOnceAndFollowed) {
    GnomeSessionAccess access(view);
    EXPECT_FALSE(bus->hasShell());
    EXPECT_EQ(access.lacks(), std::vector{SessionLack::KnownSession});
    EXPECT_FALSE(access.canWatchKeys());
    shell.does("shell knowing");
    EXPECT_TRUE(bus->hasShell());
    EXPECT_TRUE(becomes([&] { return access.lacks() == std::vector{SessionLack::ExtensionOff}; }));
    EXPECT_EQ(ShellView(bus).presence(), ShellView::Presence::Off);
    shell.does("come");
    EXPECT_TRUE(becomes([&] { return access.lacks().empty(); }));
    EXPECT_EQ(ShellView(bus).presence(), ShellView::Presence::Working);
    EXPECT_TRUE(access.canWatchKeys());
    shell.does("go");
    EXPECT_TRUE(becomes([&] { return !access.canWatchKeys(); }));
    EXPECT_EQ(access.lacks(), std::vector{SessionLack::ExtensionOff});
}

TEST_F(GnomeStandInTest, extensionThatIsOff_isSwitchedOnAtTheUsersWord) {
    GnomeSessionAccess access(view);
    shell.does("shell knowing");
    ASSERT_TRUE(becomes([&] { return access.lacks() == std::vector{SessionLack::ExtensionOff}; }));
    EXPECT_TRUE(access.give(SessionLack::ExtensionOff));
    EXPECT_TRUE(becomes([&] { return access.lacks().empty(); }));
    EXPECT_TRUE(shell.isTold({"EnableExtension talvera@home.arpa"}));
}

TEST_F(GnomeStandInTest, extensionThatTheShellDoesntKnow_waitsForTheNextLogIn) {
    GnomeSessionAccess access(view);
    shell.does("shell");
    EXPECT_TRUE(becomes([&] { return access.lacks() == std::vector{SessionLack::ExtensionUnknown}; }));
    EXPECT_FALSE(access.give(SessionLack::ExtensionUnknown));
    view->switchExtensionOn();
    EXPECT_TRUE(shell.isTold({"EnableExtension talvera@home.arpa"}));
    EXPECT_EQ(access.lacks(), std::vector{SessionLack::ExtensionUnknown});
}

TEST_F(GnomeStandInTest, focus_isFollowedAndForgottenWithTheExtension) {
    DesktopEntryCatalog installed({}, {});
    GnomeWorkspace workspace(bus, view, installed);
    const auto self = QCoreApplication::applicationPid();
    shell.does("focus 7 1 Alpha 1");
    shell.does("come");
    EXPECT_TRUE(isFocused(7));
    EXPECT_EQ(workspace.frontmostApplication(), (RunningApplication{1, "Alpha", "Alpha"}));
    shell.does(QStringLiteral("focus 8 %1 Beta 0").arg(self));
    EXPECT_TRUE(isFocused(8, false));
    EXPECT_EQ(workspace.runningApplication(1), (RunningApplication{1, "Alpha", "Alpha"}));
    shell.does("focus 0 0 - 0");
    EXPECT_TRUE(isFocused(0, false));
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    shell.does("focus 7 1 Alpha 1");
    EXPECT_TRUE(isFocused(7));
    shell.does("go");
    EXPECT_TRUE(isFocused(0, false));
}

TEST_F(GnomeStandInTest, window_isBroughtToTheFrontIfThereIsOne) {
    DesktopEntryCatalog installed({}, {});
    GnomeWorkspace workspace(bus, view, installed);
    shell.does("window 7 1 Alpha");
    shell.does("come");
    ASSERT_TRUE(becomes([&] { return !view->windows().empty(); }));
    EXPECT_TRUE(workspace.activate(1));
    EXPECT_TRUE(shell.isTold({"Activate 1"}));
    EXPECT_FALSE(workspace.activate(static_cast<pid_t>(QCoreApplication::applicationPid())));
    EXPECT_EQ(shell.takeCalls(), QStringList());
}

TEST_F(GnomeStandInTest, hungShell_isAskedNothingThatAnybodyWaitsForOnTheMainThread) {
    DesktopEntryCatalog installed({}, {});
    GnomeWorkspace workspace(bus, view, installed);
    shell.does("focus 7 1 Alpha 1");
    shell.does("come");
    ASSERT_TRUE(isFocused(7));
    shell.does("hang");
    const auto start = std::chrono::steady_clock::now();
    GnomeEventTaps taps(bus, view);
    const auto tap = taps.create([](const KeyEvent&) { return Verdict::Swallow; });
    tap->setEnabled(true);
    EXPECT_EQ(tap->watchChord(controlOptionSpace), WatchResult::Watching);
    EXPECT_TRUE(workspace.frontmostApplication());
    EXPECT_TRUE(workspace.runningApplication(1));
    EXPECT_TRUE(workspace.activate(1));
    GnomeKeyEventPoster poster(bus, view);
    EXPECT_TRUE(poster.focusedTarget());
    EXPECT_EQ(ShellView(bus).presence(), ShellView::Presence::Working);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(poster.beginTyping({"a"}, nullptr)->post(0, KeyPhase::Down), PostResult::CutOff);
    shell.does("resume");
    EXPECT_TRUE(becomes([&] { return shell.takeCalls().contains("Grab " + space); }));
}

class GnomeStandInTapsTest : public GnomeStandInTest {
protected:
    void watchSpace() {
        tap->setEnabled(true);
        EXPECT_EQ(tap->watchChord(controlOptionSpace), WatchResult::Watching);
    }
    testing::AssertionResult isHeard(const QStringList& expected) {
        if (becomes([&] { return heard == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << heard.join(' ').toStdString();
    }

    GnomeEventTaps taps{bus, view};
    QStringList heard;
    std::uint64_t lastFlags = 0;
    std::unique_ptr<EventTap> tap = taps.create([this](const KeyEvent& event) {
        heard << (isPress(event) ? u'+' : u'-') + QString::number(static_cast<int>(event.keyCode));
        lastFlags = event.flags;
        return Verdict::Swallow;
    });
};

TEST_F(GnomeStandInTapsTest, chord_isKeptWithFurtherModifiersToo) {
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49"}));
    EXPECT_EQ(lastFlags, controlOption);
    shell.does("release " + space);
    EXPECT_TRUE(isHeard({"+49", "-49"}));
    shell.does("press <Shift>" + space);
    EXPECT_TRUE(isHeard({"+49", "-49", "+49"}));
    EXPECT_EQ(lastFlags, controlOption | KeyFlag::Shift);
}

TEST_F(GnomeStandInTapsTest, extensionThatComesLater_isAskedThen) {
    watchSpace();
    EXPECT_EQ(shell.takeCalls(), QStringList());
    shell.does("come");
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49"}));
}

TEST_F(GnomeStandInTapsTest, extensionThatGoes_endsThePressAndIsAskedAgainWhenItIsBack) {
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49"}));
    shell.does("go");
    EXPECT_TRUE(isHeard({"+49", "-49"}));
    EXPECT_FALSE(tap->isBroken());
    shell.does("come");
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49", "-49", "+49"}));
}

TEST_F(GnomeStandInTapsTest, endNeverTold_comesBeforeTheNextPress) {
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49", "-49", "+49"}));
}

TEST_F(GnomeStandInTapsTest, takenChord_isToldLaterAndAskedForAgainWhenTheFocusMoves) {
    std::vector<WatchResult> results;
    tap->onResultChange = [&results](WatchResult now) { results.push_back(now); };
    shell.does("refuse " + space);
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(becomes([&] { return results == std::vector{WatchResult::ChordTaken}; }));
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("grant " + space);
    shell.does("focus 7 1 Alpha 1");
    EXPECT_TRUE(becomes([&] {
        return results == std::vector{WatchResult::ChordTaken, WatchResult::Watching};
    }));
    EXPECT_TRUE(shell.isTold({"Grab " + space}));
}

TEST_F(GnomeStandInTapsTest, chordThatIsTakenWithMoreModifiersOnly_isOurs) {
    tap->onResultChange = [](WatchResult) { ADD_FAILURE(); };
    shell.does("refuse <Shift>" + space);
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49"}));
}

TEST_F(GnomeStandInTapsTest, chordGivenUp_isGivenBack) {
    shell.does("come");
    watchSpace();
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces)));
    tap->watchNothing();
    EXPECT_TRUE(isToldAll(QStringList(grabsOf(allSpaces)).replaceInStrings("Grab", "Ungrab")));
}

TEST_F(GnomeStandInTapsTest, chordGivenUpBeforeTheAnswer_isGivenBackAllTheSame) {
    const auto ungrabs = QStringList(grabsOf(allSpaces)).replaceInStrings("Grab", "Ungrab");
    shell.does("come");
    watchSpace();
    // From here on it is known that the extension has come, and it is asked at once.
    ASSERT_TRUE(isToldAll(grabsOf(allSpaces)));
    tap->watchNothing();
    ASSERT_TRUE(isToldAll(ungrabs));
    shell.does("hang");
    watchSpace();
    tap->watchNothing();
    shell.does("resume");
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces) + ungrabs));
}

TEST_F(GnomeStandInTapsTest, twoTaps_theYoungerHearsFirst) {
    shell.does("come");
    watchSpace();
    int younger = 0;
    const auto second = taps.create([&younger](const KeyEvent& event) {
        younger += isPress(event) ? 1 : 0;
        return (event.flags & KeyFlag::Shift) != 0 ? Verdict::Swallow : Verdict::Pass;
    });
    second->setEnabled(true);
    second->watchStroke({controlOption | KeyFlag::Shift, VirtualKey::Space});
    EXPECT_TRUE(isToldAll(grabsOf(allSpaces))); // the same ones
    shell.does("press <Shift>" + space);
    shell.does("release <Shift>" + space);
    EXPECT_TRUE(becomes([&] { return younger == 1; }));
    shell.does("press " + space);
    EXPECT_TRUE(isHeard({"+49"}));
}

TEST_F(GnomeStandInTapsTest, whatNoShellKeeps_isRefusedAtOnce) {
    tap->setEnabled(true);
    EXPECT_EQ(tap->watchChord({KeyFlag::Fn, VirtualKey::Space}), WatchResult::Unavailable);
    EXPECT_EQ(tap->watchChord({0, VirtualKey::RightControl}), WatchResult::Unavailable);
    EXPECT_EQ(tap->watchKey(VirtualKey::RightControl), WatchResult::ChordsOnly);
    EXPECT_FALSE(taps.hearsKeysAlone());
}

class GnomeStandInTypingTest : public GnomeStandInTest {
protected:
    GnomeStandInTypingTest() {
        shell.does("focus 7 1 Alpha 1");
        shell.does("come");
        if (!isFocused(7))
            throw std::runtime_error("no focus");
    }

    GnomeKeyEventPoster poster{bus, view};
};

TEST_F(GnomeStandInTypingTest, chunks_areWrittenIntoTheTargetAlone) {
    const auto session = poster.beginTyping({"a  ", "e\u0301", "b\r\n", "\u0007"}, poster.focusedTarget());
    for (int index = 0; index < 4; ++index) {
        EXPECT_EQ(session->post(index, KeyPhase::Down), PostResult::Posted);
        EXPECT_EQ(session->post(index, KeyPhase::Up), PostResult::Posted);
    }
    EXPECT_TRUE(shell.isTold({"Commit 7 'a  '", "Commit 7 'e\u0301'", "Commit 7 'b\\n'"}));
    shell.does("focus 8 1 Beta 1");
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_EQ(shell.takeCalls(), QStringList());
}

TEST_F(GnomeStandInTypingTest, focusThatIsBackInAMoment_losesNothing) {
    const auto session = poster.beginTyping({"a"}, poster.focusedTarget());
    shell.does("focus 0 0 - 0");
    ASSERT_TRUE(isFocused(0, false));
    auto result = std::async(std::launch::async, [&session] { return session->post(0, KeyPhase::Down); });
    shell.does("focus 7 1 Alpha 1");
    EXPECT_EQ(result.get(), PostResult::Posted);
    EXPECT_TRUE(shell.isTold({"Commit 7 'a'"}));
}

TEST_F(GnomeStandInTypingTest, fieldThatTakesNoText_isPastedInto) {
    EXPECT_TRUE(poster.isTypingFaithful(poster.focusedTarget()));
    EXPECT_TRUE(poster.isTypingFaithful(nullptr));
    const auto target = poster.focusedTarget();
    shell.does("focus 7 1 Alpha 0");
    EXPECT_FALSE(poster.isTypingFaithful(target));
    EXPECT_FALSE(poster.isTypingFaithful(nullptr));
    shell.does("focus 8 1 Beta 0");
    EXPECT_TRUE(poster.isTypingFaithful(target)) << "typing will tell that it is lost";
}

TEST_F(GnomeStandInTypingTest, pasteChord_isHeldLongEnoughInTheTarget) {
    const auto target = poster.focusedTarget();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::Posted);
    EXPECT_TRUE(shell.isTold({"PressPaste 7 down"}));
    EXPECT_EQ(poster.postPaste(KeyPhase::Up, target), PostResult::Posted);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(40));
    EXPECT_TRUE(shell.isTold({"PressPaste 7 up"}));
    shell.does("focus 8 1 Beta 1");
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::TargetLost);
    EXPECT_EQ(poster.postPaste(KeyPhase::Up, target), PostResult::Posted);
    EXPECT_EQ(shell.takeCalls(), QStringList());
}

TEST_F(GnomeStandInTypingTest, extensionThatIsAway_cutsOff) {
    const auto target = poster.focusedTarget();
    shell.does("go");
    EXPECT_EQ(poster.beginTyping({"a"}, target)->post(0, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::CutOff);
}

} // namespace

} // namespace talvera::test
