// SPDX-License-Identifier: MIT
// What can come in between where a text is typed, character by character.
#include "FocusOnWayland.h"

#include <optional>

using namespace talvera::test;

namespace {

class FocusWhileTypingOnWayland : public FocusOnWayland {};

class DeathWhileTypingOnWayland : public OnWayland {};

} // namespace

TEST_F(FocusWhileTypingOnWayland, windowLeft_theRestGoesNowhereAndAllIsOnTheClipboard) {
    const Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    std::optional<Receiver> editor;
    dictateInto(editor, {}, longText);
    gate.letIn();
    ASSERT_TRUE(
        editor->waitFor([](const QString& text) { return text.size() >= 5; }, AgentProcess::patience));
    compositor::turnTo(other.process());
    expectNotice("Focus changed — the whole text is on the clipboard.");
    EXPECT_TRUE(clipboardBecomes(longText));
    EXPECT_LT(editor->text().size(), longText.size());
    EXPECT_TRUE(longText.startsWith(editor->text())) << editor->text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(DeathWhileTypingOnWayland, killed_givesTheKeysBackWithNoneDown) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(longText));
    ASSERT_TRUE(
        editor.waitFor([](const QString& typed) { return !typed.isEmpty(); }, AgentProcess::patience));
    agent->kill();
    keys.tap(Key::q); // a letter that the text doesn't have: nothing comes behind it
    ASSERT_TRUE(editor.waitFor([](const QString& typed) { return typed.contains(u'q'); }));
    EXPECT_TRUE(editor.waitForKeysDown(false));
    const auto typed = editor.text().remove(u'q');
    EXPECT_LT(typed.size(), longText.size());
    EXPECT_TRUE(longText.startsWith(typed)) << typed.toStdString();
    expectKeysAreTheUsersAgain();
}
