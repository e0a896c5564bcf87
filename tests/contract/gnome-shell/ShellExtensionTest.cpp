// SPDX-License-Identifier: MIT
// What the extension does for its callers, in a real GNOME Shell.
#include "Peer.h"
#include "RigInput.h"
#include "keys.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <csignal>
#include <utility>
#include <vector>

namespace talvera::test {
namespace {

constexpr auto chord = "<Control><Alt>0x41";

/// A program that calls the extension.
class Caller {
public:
    Caller() { EXPECT_EQ(peer.readUntil("there"), ""); }

    QJsonArray ask(const QJsonArray& call) {
        peer.tell(QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact)));
        return QJsonDocument::fromJson(peer.readUntil("answer").toUtf8()).array();
    }
    int number(const QJsonArray& call) { return ask(call).at(0).toInt(-1); }
    void haveTheShellDo(const QString& script) { EXPECT_TRUE(ask({"Eval", script}).at(0).toBool()); }
    bool shellTellsRelease() {
        return ask({"Eval", "imports.gi.GObject.signal_lookup('accelerator-deactivated', "
                            "global.display.constructor.$gtype)"})
                   .at(1)
                   .toString()
                   .toInt() != 0;
    }
    QString told() { return peer.readLine(); }
    bool awaitField() {
        return eventually([this] { return ask({"Focus"}).at(3).toBool(); });
    }

    Peer peer{"/usr/bin/python3", {TALVERA_SHELL_CLIENT}};
};

class KeyWindow : public Peer {
public:
    KeyWindow()
        : Peer("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Keys"}) {
        EXPECT_EQ(readUntil("f"), "ocus");
    }
};

class TextWindow : public Peer {
public:
    explicit TextWindow(const QString& gtk)
        : Peer("/usr/bin/python3", {TALVERA_TEXT_WINDOW, gtk, "Text"}) {
        EXPECT_EQ(readUntil("focus"), "");
    }
};

void holdChord(RigInput& input) {
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        input.press(key);
}

class ShellExtension : public testing::Test {
protected:
    KeyWindow window;
    RigInput input;
};

TEST_F(ShellExtension, chord_isToldWhenItGoesDownAndWhenItsFirstModifierGoesUp) {
    Caller caller;
    const int action = caller.number({"Grab", chord});
    ASSERT_GT(action, 0);
    const std::vector<std::vector<XKeycode>> orders{{Key::leftControl, Key::space, Key::leftAlt},
                                                    {Key::space, Key::leftAlt, Key::leftControl}};
    for (const auto& order : orders) {
        holdChord(input);
        EXPECT_EQ(caller.peer.readUntil("Pressed"), QStringLiteral("[%1]").arg(action));
        for (const auto key : order)
            input.release(key);
        EXPECT_EQ(caller.told(), QStringLiteral("Released [%1]").arg(action));
    }
}

TEST_F(ShellExtension, keyAlone_isGrantedWhereItsEndIsKnown_andHasOneAlways) {
    Caller caller;
    const int action = caller.number({"Grab", "F8"});
    if (!caller.shellTellsRelease()) {
        EXPECT_EQ(action, 0);
        return;
    }
    ASSERT_GT(action, 0);
    const auto pressed = QStringLiteral("[%1]").arg(action);
    const auto released = QStringLiteral("Released [%1]").arg(action);
    input.press(Key::f8);
    EXPECT_EQ(caller.peer.readUntil("Pressed "), pressed);
    input.release(Key::f8);
    EXPECT_EQ(caller.told(), released);
    for (const auto joining : {Key::leftShift, Key::leftControl, Key::leftAlt}) {
        input.press(Key::f8);
        EXPECT_EQ(caller.peer.readUntil("Pressed "), pressed);
        input.press(joining);
        EXPECT_EQ(caller.told(), released);
        input.release(Key::f8);
        input.release(joining);
    }
    input.tap(Key::capsLock);
    input.press(Key::f8);
    EXPECT_EQ(caller.told(), "Pressed " + pressed);
    input.release(Key::f8);
    EXPECT_EQ(caller.told(), released);
    input.tap(Key::capsLock);
}

TEST_F(ShellExtension, chordThatSomethingElseHas_isRefused) {
    Caller caller;
    EXPECT_EQ(caller.number({"Grab", "<Super>s"}), 0);
    ASSERT_GT(caller.number({"Grab", chord}), 0);
    Caller other;
    EXPECT_EQ(other.number({"Grab", chord}), 0);
}

TEST_F(ShellExtension, callerThatIsKilled_leavesItsKeysToTheWindows) {
    Caller caller;
    ASSERT_GT(caller.number({"Grab", chord}), 0);
    caller.peer.signal(SIGKILL);
    Caller next;
    EXPECT_TRUE(eventually([&next] {
        const int action = next.number({"Grab", chord});
        next.ask({"Ungrab", action});
        return action > 0;
    }));
    holdChord(input);
    EXPECT_EQ(window.readUntil("+65"), "");
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        input.release(key);
}

TEST_F(ShellExtension, text_standsInTheFieldAsItIsWhateverTheUserHolds) {
    const QString text =
        QString::fromUtf8("aZ9!? Привет e\u0301 日本語 😀 👩‍👩‍👧 «x»\nT");
    for (const auto* gtk : {"3.0", "4.0"}) {
        TextWindow field{QString::fromLatin1(gtk)};
        Caller caller;
        ASSERT_TRUE(caller.awaitField()) << gtk;
        input.press(Key::leftControl);
        input.press(Key::leftAlt);
        EXPECT_EQ(caller.number({"Commit", caller.ask({"Focus"}).at(0), text}), 0);
        const auto stands = "[" + field.readUntil("text ") + "]";
        EXPECT_EQ(QJsonDocument::fromJson(stands.toUtf8()).array().at(0).toString(), text) << gtk;
        input.release(Key::leftAlt);
        input.release(Key::leftControl);
    }
}

TEST_F(ShellExtension, text_isRefusedWhereItDoesNotBelong) {
    Caller caller;
    EXPECT_EQ(caller.number({"Commit", 0, "x"}), 2) << "a window without a field";
    EXPECT_EQ(caller.number({"Commit", 1, "x"}), 1) << "another window";
    caller.haveTheShellDo("Main.overview.show()");
    ASSERT_TRUE(eventually([&caller] { return caller.number({"Focus"}) == 0; }));
    EXPECT_EQ(caller.number({"Commit", 0, "x"}), 1) << "the Shell's own search";
    EXPECT_EQ(caller.number({"PressPaste", 0, true}), 1);
    caller.haveTheShellDo("Main.overview.hide()");
}

TEST_F(ShellExtension, pasteChord_isPressedOnlyWhereItIsThatChord) {
    Caller caller;
    input.press(Key::leftControl);
    EXPECT_EQ(caller.number({"PressPaste", 0, true}), 2);
    input.release(Key::leftControl);
    EXPECT_EQ(window.readUntil("+"), "37");
    EXPECT_EQ(caller.number({"PressPaste", 0, true}), 0);
    EXPECT_EQ(window.readUntil("+"), "50");
    EXPECT_EQ(window.readUntil("+"), "118");
    caller.peer.signal(SIGKILL);
    EXPECT_EQ(window.readUntil("-118"), "");
    EXPECT_EQ(window.readUntil("-"), "50");
}

TEST_F(ShellExtension, focusThatMoves_isTold_andCanBeGivenBack) {
    Caller caller;
    const auto before = caller.ask({"Focus"});
    EXPECT_EQ(before.at(1).toInt(), int(window.pid()));
    EXPECT_EQ(before.at(2).toString(), "Keys");
    TextWindow field("3.0");
    EXPECT_TRUE(caller.peer.readUntil("FocusChanged").contains("\"Text\""));
    EXPECT_TRUE(caller.ask({"Activate", int(window.pid())}).at(0).toBool());
    EXPECT_EQ(window.readUntil("f"), "ocus");
    EXPECT_EQ(caller.ask({"Focus"}), before);
    EXPECT_FALSE(caller.ask({"Activate", 1}).at(0).toBool());
}

TEST_F(ShellExtension, lockedScreen_endsThePressAndTakesTheExtensionAway) {
    Caller caller;
    ASSERT_GT(caller.number({"Grab", chord}), 0);
    holdChord(input);
    EXPECT_NE(caller.peer.readUntil("Pressed"), "");
    caller.haveTheShellDo("Main.sessionMode.pushMode('unlock-dialog')");
    EXPECT_EQ(caller.peer.readUntil("gone"), "");
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        input.release(key);
    caller.haveTheShellDo("Main.sessionMode.popMode('unlock-dialog')");
    EXPECT_EQ(caller.peer.readUntil("there"), "");
    EXPECT_GT(caller.number({"Grab", chord}), 0) << "its keys have been given back";
}

} // namespace
} // namespace talvera::test
