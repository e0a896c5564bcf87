// SPDX-License-Identifier: MIT
// Chords in a GNOME session, with a program that has the focus.
#include "../focus/Peer.h"
#include "GnomeDesk.h"
#include "PrintQt.h"
#include "RigInput.h"
#include "keys.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace talvera::test {

namespace {

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;
constexpr KeyChord controlOptionSpace{controlOption, VirtualKey::Space};

class GnomeEventTapsTest : public testing::Test {
protected:
    GnomeEventTapsTest() {
        if (!desk.isInFront(window.pid(), false))
            throw std::runtime_error("the window doesn't take the focus");
        tap->setEnabled(true);
    }
    ~GnomeEventTapsTest() override {
        for (const auto key : std::vector(held))
            keys.release(key);
    }

    void press(const std::vector<XKeycode>& pressed) {
        for (const auto key : pressed) {
            held.push_back(key);
            keys.press(key);
        }
    }
    void release(const std::vector<XKeycode>& released) {
        for (const auto key : released) {
            std::erase(held, key);
            keys.release(key);
        }
    }

    /// Returns when the Shell keeps it: it answers in order.
    void watchSpace() {
        ASSERT_EQ(tap->watchChord(controlOptionSpace), WatchResult::Watching);
        ASSERT_TRUE(desk.bus->ask(QStringLiteral("Focus"), {}));
        QCoreApplication::processEvents();
    }

    testing::AssertionResult isTold(const QStringList& expected) {
        if (GnomeDesk::becomes([&] { return told == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << told.join(' ').toStdString();
    }

    /// The keys that the program has had. They come in order, so all are there once one comes that nobody
    /// keeps.
    QStringList takeKeys() {
        keys.tap(Key::a);
        QStringList had;
        for (auto line = window.readLine(); line != QStringLiteral("-38"); line = window.readLine()) {
            if (line.isEmpty())
                throw std::runtime_error("the window hears no keys");
            if ((line.startsWith(u'+') || line.startsWith(u'-')) && line != QStringLiteral("+38"))
                had << line;
        }
        return had;
    }

    RigInput keys;
    std::vector<XKeycode> held;
    GnomeDesk desk;
    Peer window{"/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Keys"}};
    GnomeEventTaps taps{desk.bus, desk.view};
    QStringList told;
    std::uint64_t lastFlags = 0;
    std::unique_ptr<EventTap> tap = taps.create([this](const KeyEvent& event) {
        told << (isPress(event) ? u'+' : u'-') + QString::number(static_cast<int>(event.keyCode));
        lastFlags = event.flags;
        return Verdict::Swallow;
    });
    const std::vector<XKeycode> chord{Key::leftControl, Key::leftAlt, Key::space};
};

TEST_F(GnomeEventTapsTest, chord_isToldDownAndUpAndKeptFromTheProgram) {
    watchSpace();
    for (int time = 0; time < 3; ++time) {
        told.clear();
        press(chord);
        EXPECT_TRUE(isTold({"+49"}));
        EXPECT_EQ(lastFlags, controlOption);
        release({Key::space, Key::leftAlt, Key::leftControl});
        EXPECT_TRUE(isTold({"+49", "-49"}));
    }
    EXPECT_EQ(takeKeys().count("+65"), 0);
}

TEST_F(GnomeEventTapsTest, modifierLetGoFirst_endsThePress) {
    watchSpace();
    press(chord);
    EXPECT_TRUE(isTold({"+49"}));
    release({Key::leftControl});
    EXPECT_TRUE(isTold({"+49", "-49"}));
    release({Key::space, Key::leftAlt});
    EXPECT_EQ(takeKeys().count("+65"), 0);
}

TEST_F(GnomeEventTapsTest, furtherModifiersAndLocks_changeNothing) {
    watchSpace();
    for (const auto key : {Key::leftShift, Key::leftSuper}) {
        told.clear();
        press({key});
        press(chord);
        EXPECT_TRUE(isTold({"+49"}));
        release({Key::space, Key::leftAlt, Key::leftControl});
        EXPECT_TRUE(isTold({"+49", "-49"}));
        release({key});
    }
    for (const auto lock : {Key::capsLock, Key::numLock}) {
        told.clear();
        keys.tap(lock);
        press(chord);
        EXPECT_TRUE(isTold({"+49"}));
        release({Key::space, Key::leftAlt, Key::leftControl});
        EXPECT_TRUE(isTold({"+49", "-49"}));
        keys.tap(lock);
    }
}

TEST_F(GnomeEventTapsTest, keyWithTooFewModifiers_reachesTheProgram) {
    watchSpace();
    press({Key::leftControl, Key::space});
    release({Key::space, Key::leftControl});
    keys.tap(Key::space);
    EXPECT_EQ(takeKeys().count("+65"), 2);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(GnomeEventTapsTest, chordGivenUp_reachesTheProgramAgain) {
    watchSpace();
    press(chord);
    EXPECT_TRUE(isTold({"+49"}));
    tap->watchNothing();
    release({Key::space, Key::leftAlt, Key::leftControl});
    ASSERT_TRUE(desk.bus->ask(QStringLiteral("Focus"), {}));
    takeKeys();
    press(chord);
    release({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_EQ(takeKeys().count("+65"), 1);
    EXPECT_TRUE(isTold({"+49"}));
}

// The Shell shows the desktop at it.
TEST_F(GnomeEventTapsTest, chordOfTheShell_isTaken) {
    std::vector<WatchResult> results;
    tap->onResultChange = [&results](WatchResult now) { results.push_back(now); };
    tap->watchChord({KeyFlag::Option, VirtualKey::Tab});
    EXPECT_TRUE(GnomeDesk::becomes([&] { return results == std::vector{WatchResult::ChordTaken}; }));
}

TEST_F(GnomeEventTapsTest, chordOfAnother_isOursOnceItIsFree) {
    std::vector<WatchResult> results;
    tap->onResultChange = [&results](WatchResult now) { results.push_back(now); };
    {
        GnomeDesk other;
        GnomeEventTaps otherTaps(other.bus, other.view);
        const auto first = otherTaps.create([](const KeyEvent&) { return Verdict::Swallow; });
        first->setEnabled(true);
        first->watchChord(controlOptionSpace);
        ASSERT_TRUE(other.bus->ask(QStringLiteral("Focus"), {}));
        tap->watchChord(controlOptionSpace);
        ASSERT_TRUE(GnomeDesk::becomes([&] { return results == std::vector{WatchResult::ChordTaken}; }));
    }
    ASSERT_TRUE(desk.bus->ask(QStringLiteral("Focus"), {}));
    const Peer another("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Another"});
    ASSERT_TRUE(desk.isInFront(another.pid(), false));
    EXPECT_TRUE(GnomeDesk::becomes([&] {
        return results == std::vector{WatchResult::ChordTaken, WatchResult::Watching};
    }));
    press(chord);
    EXPECT_TRUE(isTold({"+49"}));
}

} // namespace

} // namespace talvera::test
