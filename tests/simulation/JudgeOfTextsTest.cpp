// SPDX-License-Identifier: MIT
//
// What the judge knows of texts, and of the windows that they are meant for.
#include "JudgeFixture.h"

using namespace talvera;
using namespace talvera::simulation;

namespace {

using JudgeOfTexts = JudgeFixture;

TEST_F(JudgeOfTexts, lettersInAWindowThatTheyWereNotMeantFor_areNoticed) {
    sabotage = [this] { world().keys.ignoresTargets = true; };
    EXPECT_EQ(verdict(dictation + QStringList{"3.1 focus on the mail"}),
              QStringLiteral(" came into the window Mail, which it was not meant for"));
}

TEST_F(JudgeOfTexts, lettersInAPasswordField_areNoticed) {
    sabotage = [this] { world().keys.ignoresTargets = true; };
    EXPECT_EQ(verdict(dictation + QStringList{"3.1 the screen is locked"}),
              QStringLiteral(" came into the window Locker, which it was not meant for"));
}

TEST_F(JudgeOfTexts, lettersFromNowhere_areNoticed) {
    sabotage = [this] { world().keys.onText("Editor", "x"); };
    EXPECT_EQ(verdict({}), QStringLiteral(" came into the window Editor from nowhere"));
}

TEST_F(JudgeOfTexts, chordThatPastesUnasked_isNoticed) {
    sabotage = [this] { world().keys.postPaste(KeyPhase::Down, nullptr); };
    EXPECT_EQ(verdict({}), QStringLiteral(" came into the window Editor from nowhere"));
}

TEST_F(JudgeOfTexts, otherLettersThanThoseOfTheText_areNoticed) {
    sabotage = [this] { at(3.1, [this] { world().keys.onText("Editor", "x"); }); };
    EXPECT_EQ(verdict(dictation), QStringLiteral(" came into the window Editor instead of "));
}

TEST_F(JudgeOfTexts, textThatIsNowhere_isNoticed) {
    sabotage = [this] { world().keys.losesTexts = true; };
    EXPECT_EQ(verdict(dictation), QStringLiteral("a text is nowhere"));
}

TEST_F(JudgeOfTexts, textOnTheClipboardForNoReason_isNoticed) {
    sabotage = [this] {
        world().keys.onRefused = nullptr;
        world().keys.canPost = [](const test::PostedKeyEvent&) { return false; };
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral("left on the clipboard for no reason"));
}

TEST_F(JudgeOfTexts, textOnTheClipboardWithoutAWord_isNoticed) {
    sabotage = [this] { hide("hud"); };
    EXPECT_EQ(verdict(dictation + QStringList{"3.1 the way to the keyboard is cut off"}),
              QStringLiteral("left on the clipboard, and nobody was told"));
}

TEST_F(JudgeOfTexts, textWithALetterMissing_isNoticed) {
    sabotage = [this] {
        world().keys.onText = [judge = world().keys.onText](const QString& receiver, const QString& part) {
            if (part != "e")
                judge(receiver, part);
        };
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral(" came into the window Editor instead of "));
}

TEST_F(JudgeOfTexts, textOfNoDictation_isNoticed) {
    sabotage = [this] { at(1, [this] { world().keyPoster.onTyping("Hello"); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("delivered without a reason"));
}

TEST_F(JudgeOfTexts, textThatIsTypedThoughItWasForTheClipboard_isNoticed) {
    sabotage = [this] {
        world().onEffect = [judge = world().onEffect](test::Effect effect) {
            if (effect.effect == "clipboard")
                effect.effect = "type";
            judge(effect);
        };
    };
    EXPECT_EQ(verdict(QStringList{"0 set focusProtectionMode to \"clipboardOnly\""} + slowDictation +
                      QStringList{"2.1 focus on the mail"}),
              QStringLiteral("inserted, though it was for the clipboard"));
}

TEST_F(JudgeOfTexts, noticeOfNoText_isNoticed) {
    sabotage = [this] {
        at(1, [this] {
            forge("hud", {{"state", "notice"}, {"text", "The text is lost"}, {"seconds", 6.0}});
        });
    };
    EXPECT_EQ(verdict({}), QStringLiteral("told of no text"));
}

TEST_F(JudgeOfTexts, textThatIsCalledLostForNoReason_isNoticed) {
    sabotage = [this] {
        world().keys.losesTexts = true;
        at(4, [this] {
            forge("hud", {{"state", "notice"}, {"text", "The text is lost"}, {"seconds", 6.0}});
        });
    };
    EXPECT_EQ(verdict(dictation), QStringLiteral("called lost, though the clipboard would have taken it"));
}

// ---- the application that has to come back

TEST_F(JudgeOfTexts, applicationThatIsBroughtBackForNoReason_isNoticed) {
    sabotage = [this] { at(1, [this] { world().workspace.activate(desktop::mail.pid); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("an application was brought to the front for no reason"));
}

TEST_F(JudgeOfTexts, wrongApplicationThatIsBroughtBack_isNoticed) {
    sabotage = [this] { at(3, [this] { world().workspace.activate(desktop::nameless.pid); }); };
    EXPECT_EQ(verdict(slowDictation + QStringList{"2.1 focus on the mail"}),
              QStringLiteral("the wrong application was brought to the front"));
}

TEST_F(JudgeOfTexts, applicationThatIsNotBroughtBack_isNoticed) {
    sabotage = [this] { hide("activate"); };
    EXPECT_EQ(verdict(QStringList{"0 no application can be brought to the front"} + slowDictation +
                      QStringList{"2.1 focus on the mail"}),
              QStringLiteral("nobody tried to bring the application back"));
}

} // namespace
