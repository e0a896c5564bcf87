// SPDX-License-Identifier: MIT
#include "shell/hud/FocusNoticeText.h"

#include <gtest/gtest.h>

using namespace talvera;
using Kind = FocusNotice::Kind;
using Tone = DictationHUDState::NoticeTone;

namespace {

struct Row {
    FocusNotice notice;
    const char* text;
    Tone tone;
    double seconds;
};

TEST(FocusNoticeText, everyKind_hasItsTextToneAndTime) {
    const Row rows[] = {
        {{Kind::PastedIn, "Editor"}, "Pasted in Editor", Tone::Info, 3},
        {{Kind::ClipboardOriginalGone, "Editor"},
         "Editor closed — text copied to clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardReactivateFailed, "Editor"},
         "Couldn't switch back to Editor — text copied to clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardByUserPreference},
         "Focus changed — text copied to clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardNoTextField},
         "No text field focused — text copied to clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardFocusLost},
         "Focus changed — the whole text is on the clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardNotPossible},
         "Couldn't insert the text — it is on the clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::ClipboardNotTaken},
         "The app hasn't taken the text — it is on the clipboard. Press ⌘V to paste.",
         Tone::Warn,
         6},
        {{Kind::Undelivered}, "The text is lost: it could neither be inserted nor copied.", Tone::Warn, 6},
    };
    for (const auto& row : rows) {
        const auto shown = focusNoticeText(row.notice);
        EXPECT_EQ(shown.text, QString::fromUtf8(row.text));
        EXPECT_EQ(shown.tone, row.tone);
        EXPECT_EQ(toSeconds(shown.autoHideAfter), row.seconds);
    }
}

TEST(FocusNoticeText, closedApplicationWithoutAName_isCalledTheAppWithACapital) {
    EXPECT_EQ(focusNoticeText({Kind::ClipboardOriginalGone, ""}).text,
              QString::fromUtf8("The app closed — text copied to clipboard. Press ⌘V to paste."));
}

TEST(FocusNoticeText, failedReactivationWithoutAName_isCalledTheAppInsideTheSentence) {
    EXPECT_EQ(
        focusNoticeText({Kind::ClipboardReactivateFailed, ""}).text,
        QString::fromUtf8("Couldn't switch back to the app — text copied to clipboard. Press ⌘V to paste."));
}

TEST(FocusNoticeText, pastedInWithoutAName_stopsAfterTheSpace) {
    EXPECT_EQ(focusNoticeText({Kind::PastedIn, ""}).text, "Pasted in ");
}

TEST(FocusNoticeText, nameOfFortyCharacters_isShownWhole) {
    const auto name = QString("0123456789").repeated(4);
    EXPECT_EQ(focusNoticeText({Kind::PastedIn, name}).text, "Pasted in " + name);
}

TEST(FocusNoticeText, longerName_losesItsMiddleSoThatTheRestCanBeRead) {
    const QString name("Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft");
    const QString shorter("Donaudampfschifffah…beamtengesellschaft");
    EXPECT_EQ(focusNoticeText({Kind::PastedIn, name}).text, "Pasted in " + shorter);
    EXPECT_EQ(focusNoticeText({Kind::ClipboardOriginalGone, name}).text,
              shorter + QString::fromUtf8(" closed — text copied to clipboard. Press ⌘V to paste."));
    EXPECT_EQ(focusNoticeText({Kind::ClipboardReactivateFailed, name}).text,
              QString::fromUtf8("Couldn't switch back to ") + shorter +
                  QString::fromUtf8(" — text copied to clipboard. Press ⌘V to paste."));
}

TEST(FocusNoticeText, longerNameOfComposedCharacters_losesWholeOnes) {
    const QString family = QString::fromUtf8("👩‍👩‍👧‍👦");
    EXPECT_EQ(focusNoticeText({Kind::PastedIn, family.repeated(41)}).text,
              "Pasted in " + family.repeated(19) + QString::fromUtf8("…") + family.repeated(19));
}

TEST(FocusNoticeText, nameThatHoldsPlaceholders_isShownAsItStands) {
    EXPECT_EQ(focusNoticeText({Kind::PastedIn, "100%@ %1 %s"}).text, "Pasted in 100%@ %1 %s");
}

} // namespace
