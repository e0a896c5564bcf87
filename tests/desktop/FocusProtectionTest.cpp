// SPDX-License-Identifier: MIT
// Where the text goes when the user is somewhere else by then.
#include "DesktopTest.h"
#include "RecogniserGate.h"

using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("Please send the report tomorrow.");

/// The words that follow name the keys to paste with, which are the catalog's business.
const QString onClipboard = QStringLiteral(" — text copied to clipboard.");

class FocusProtection : public DesktopTest {
protected:
    /// Dictates into an editor; when this returns the recognition waits to be let in.
    void dictateInto(std::optional<Receiver>& editor, const QJsonObject& preferences = {}) {
        startAgent(preferences, gate.program());
        editor.emplace(Receiver::Kind::Gtk, "the editor");
        holdAndSay(spoken(sentence));
        gate.awaitRun();
    }

    RecogniserGate gate;
};

/// On a desktop of its own: after Alt+Tab openbox takes the user to be at work in the window that they have
/// switched to, and gives new ones no focus.
class FocusLeftWhileTyping : public FocusProtection {};

} // namespace

TEST_F(FocusProtection, windowLeftDuringRecognition_isBroughtBackAndSaidSo) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    Receiver other(Receiver::Kind::Qt, "the other window");
    gate.letIn();
    EXPECT_EQ(agent->await("hud notice"), "hud notice Pasted in Gtk-editor.py info");
    EXPECT_TRUE(editor->waitForText(sentence)) << editor->text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusProtection, windowLeftInClipboardMode_staysAndTheTextIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor, {{"focusProtectionMode", "clipboardOnly"}});
    Receiver other(Receiver::Kind::Qt, "the other window");
    gate.letIn();
    agent->await("hud notice Focus changed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));

    keys.press(Key::leftControl); // pasted where the user is now
    keys.tap(Key::v);
    keys.release(Key::leftControl);
    EXPECT_TRUE(other.waitForText(sentence)) << other.text().toStdString();
    EXPECT_EQ(editor->text(), "");
}

TEST_F(FocusProtection, windowClosedDuringRecognition_textIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    editor.reset();
    gate.letIn();
    agent->await("hud notice Gtk-editor.py closed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));
}

TEST_F(FocusProtection, noWindowAtAll_textIsOnTheClipboard) {
    startAgent({}, gate.program());
    gate.letIn();
    holdAndSay(spoken(sentence));
    agent->await("hud notice No text field focused" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));
}

TEST_F(FocusProtection, buttonInFocus_textIsOnTheClipboard) {
    startAgent({}, gate.program());
    QProcess widgets;
    widgets.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    widgets.start(TALVERA_GTK_WIDGETS, {"button"});
    QByteArray told;
    while (!told.contains("focused button\n") && widgets.waitForReadyRead())
        told += widgets.readAllStandardOutput();
    ASSERT_TRUE(told.contains("focused button\n"));

    gate.letIn();
    holdAndSay(spoken(sentence));
    agent->await("hud notice No text field focused" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));
    widgets.kill();
    widgets.waitForFinished();
}

TEST_F(FocusLeftWhileTyping, restIsTypedNowhereAndAllIsOnTheClipboard) {
    Receiver other(Receiver::Kind::Qt, "the other window");
    std::optional<Receiver> editor;
    dictateInto(editor);
    gate.letIn();
    ASSERT_TRUE(editor->waitFor([](const QString& text) { return text.size() >= 5; }));
    keys.press(Key::leftAlt);
    keys.tap(Key::tab);
    keys.release(Key::leftAlt);
    agent->await("hud notice Focus changed — the whole text is on the clipboard.");
    EXPECT_TRUE(clipboardBecomes(sentence));
    EXPECT_LT(editor->text().size(), sentence.size());
    EXPECT_TRUE(sentence.startsWith(editor->text())) << editor->text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusProtection, windowOpenedBetweenDictations_getsTheSecondOne) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    gate.letIn();
    EXPECT_TRUE(editor->waitForText(sentence));
    agent->await("menu idle");
    Receiver other(Receiver::Kind::Qt, "the other window");
    gate.letIn();
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(other.waitForText("Good morning.")) << other.text().toStdString();
    agent->await("menu idle");
    EXPECT_EQ(editor->text(), sentence);
}
