// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "platform/linux/x11/X11KeyEventPoster.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

/// A megabyte of lines that differ, so that a piece lost or doubled is seen.
QString megabyte() {
    QString text;
    for (int line = 0; text.size() < 1 << 20; ++line) {
        text += QStringLiteral("line %1 of a long dictation, größer als üblich — ").arg(line);
    }
    return text;
}

/// Pastes into a real application, as delivery does; the text has to arrive as it stands.
void expectPasteArrives(Receiver::Kind kind, const QString& text, const std::string& layout = "us") {
    setLayout(layout);
    Receiver receiver(kind);
    X11Pasteboard pasteboard(TALVERA_X11_COMPANION);
    X11KeyEventPoster poster;
    pasteText(poster, pasteboard, text);
    EXPECT_TRUE(receiver.waitForText(text))
        << receiver.text().size() << " of " << text.size() << ": " << receiver.text().left(200).toStdString();
}

} // namespace

#define TALVERA_MATRIX(suite, kind)                                                                          \
    TEST(suite, mixedText_arrives) {                                                                         \
        expectPasteArrives(kind, mixedText());                                                               \
    }                                                                                                        \
    TEST(suite, layoutWithoutLatinLetters_makesNoDifference) {                                               \
        expectPasteArrives(kind, mixedText(), "ru");                                                         \
    }                                                                                                        \
    TEST(suite, aMegabyte_arrivesWhole) {                                                                    \
        expectPasteArrives(kind, megabyte());                                                                \
    }

TALVERA_MATRIX(PasteInGtk, Receiver::Kind::Gtk)
TALVERA_MATRIX(PasteInQt, Receiver::Kind::Qt)
TALVERA_MATRIX(PasteInTerminal, Receiver::Kind::Terminal)
TALVERA_MATRIX(PasteInChromium, Receiver::Kind::Chromium)
