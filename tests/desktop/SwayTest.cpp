// SPDX-License-Identifier: MIT
// The main job in a sway session: hold the keys, speak, let go, and the words stand at the cursor, in
// programs of Wayland's and of X's alike.
#include "DesktopTest.h"
#include "HUDOnScreen.h"
#include "RecogniserGate.h"

#include <QJsonDocument>
#include <QProcess>

#include <stdexcept>

using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("Please send the report tomorrow.");

/// What a program prints that has to succeed.
QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + " fails");
    return process.readAllStandardOutput();
}

void tellSway(const QString& command) {
    outputOf("swaymsg", {"-q", command});
}

/// Whether the user sees but one colour there.
bool isPlain(const QRect& place) {
    const auto area =
        QStringLiteral("%1,%2 %3x%4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
    const auto picture = outputOf("grim", {"-t", "ppm", "-g", area, "-"});
    const auto pixels = picture.right(qsizetype(3) * place.width() * place.height());
    return pixels.chopped(3) == pixels.mid(3); // each as the one before it
}

/// Programs that are started while this lives are X programs, in a session that has both.
class OnXWayland {
public:
    OnXWayland() { ::qputenv("GDK_BACKEND", "x11"); }
    OnXWayland(const OnXWayland&) = delete;
    OnXWayland& operator=(const OnXWayland&) = delete;
    ~OnXWayland() { ::qunsetenv("GDK_BACKEND"); }
};

class OnSway : public DesktopTest {
protected:
    OnSway() { hotkeys = {Key::leftControl, Key::leftAlt, Key::space}; }

    void dictateInto(Receiver& receiver, const QString& text = sentence) {
        const auto before = receiver.text();
        holdAndSay(spoken(text));
        EXPECT_TRUE(receiver.waitForText(before + text)) << receiver.text().toStdString();
        agent->await("menu idle");
    }
    QJsonObject status() const {
        QProcess process;
        process.setProcessEnvironment(home.environment());
        process.start(TALVERA_PROGRAM, {"status", "--json"});
        process.waitForFinished(120000);
        return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    }
};

} // namespace

TEST_F(OnSway, freshPreferences_haveAChordThatWorksHere) {
    startAgent();
    const auto told = status();
    EXPECT_TRUE(told["keyboard"].toBool());
    EXPECT_TRUE(told["ready"].toBool());
    EXPECT_EQ(told["hotkey"].toString(), "watching");
}

TEST_F(OnSway, keyAloneAsTheHotkey_isSaidNotToWork) {
    const QByteArray binding = R"({"holdSpecial":{"_0":"rightCommand"}})";
    startAgent({{"hotkeyBinding", QJsonObject{{"data", QString::fromLatin1(binding.toBase64())}}}});
    EXPECT_EQ(status()["hotkey"].toString(), "unavailable");
    const QString notice = "hud notice A key held alone can't be your hotkey here — choose several, such as "
                           "Ctrl+Alt+Space warn";
    if (agent->count(notice) == 0)
        agent->await(notice);
}

TEST_F(OnSway, intoATerminal_isTyped) {
    startAgent();
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateInto(terminal);
}

TEST_F(OnSway, intoAGtkEditor_isTyped) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
    dictateInto(editor, "Good morning.");
}

TEST_F(OnSway, intoAnXProgram_isTyped) {
    const OnXWayland x11;
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
}

TEST_F(OnSway, modifierLetGoFirst_staysOutOfTheText) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    pressHotkey();
    agent->await("menu recording");
    voice.sayAndWait(spoken(sentence));
    keys.release(Key::leftControl);
    keys.release(Key::space);
    agent->await("menu transcribing");
    keys.release(Key::leftAlt);
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(OnSway, tapping_beginsAndEnds) {
    startAgent({{"hotkeyTapToToggle", true}});
    Receiver editor(Receiver::Kind::Gtk);
    pressHotkey();
    releaseHotkey();
    agent->await("menu recording");
    voice.sayAndWait(spoken(sentence));
    pressHotkey();
    releaseHotkey();
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(OnSway, hud_isSeenAboveAFullScreenWindowThatKeepsTheFocus) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    tellSway("fullscreen enable");
    pressHotkey();
    agent->await("hud listening");
    HUDOnScreen hud;
    std::optional<QRect> place;
    ASSERT_TRUE(eventually([&] { return (place = hud.place()).has_value(); }));
    EXPECT_TRUE(eventually([&] { return !isPlain(*place); }));
    voice.sayAndWait(spoken(sentence));
    releaseHotkey();
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    agent->await("hud hidden");
    EXPECT_TRUE(eventually([&] { return !hud.place(); }));
    EXPECT_TRUE(eventually([&] { return isPlain(*place); }));
}

TEST_F(OnSway, windowLeftDuringRecognition_isBroughtBackAndSaidSo) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk, "the editor");
    holdAndSay(spoken(sentence));
    gate.awaitRun();
    Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    gate.letIn();
    agent->await("hud notice Pasted in ");
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(OnSway, configurationReadAgain_theHotkeyGoesOnWorking) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    // One of the agent's bindings that this dictation doesn't need: it is there again when all are.
    const QStringList takeOneAway{"-q", "unbindcode Shift+Ctrl+Mod1+65"};
    ASSERT_EQ(QProcess::execute("swaymsg", takeOneAway), 0);
    tellSway("reload");
    EXPECT_TRUE(eventually([&] { return QProcess::execute("swaymsg", takeOneAway) == 0; }));
    dictateInto(editor);
}

TEST_F(OnSway, agentKilledWhileItListens_theKeysAreTheUsersAgain) {
    startAgent();
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateInto(terminal);
    pressHotkey();
    agent->await("menu recording");
    agent->kill();
    releaseHotkey();
    EXPECT_TRUE(eventually([&] {
        pressHotkey();
        releaseHotkey();
        keys.tap(Key::a);                          // the terminal has read the chord when it has read this
        return terminal.text().contains(QChar(0)); // what Ctrl+Space is in terminals
    }));
}
