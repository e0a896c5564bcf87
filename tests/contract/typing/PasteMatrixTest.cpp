// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
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
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    X11KeyEventPoster poster{X11Server()};
    pasteText(poster, pasteboard, text);
    EXPECT_TRUE(receiver.waitForText(text))
        << receiver.text().size() << " of " << text.size() << ": " << receiver.text().left(200).toStdString();
}

/// Takes the primary selection, and notices when a program with something marked takes it away.
class PrimaryWatch {
public:
    PrimaryWatch() {
        xcb_connection_t* x = m_connection->get();
        const xcb_window_t window = xcb_generate_id(x);
        xcb_create_window(x, 0, window, m_connection->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(x, window, XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
    }

    bool waitUntilTaken(std::chrono::seconds limit) {
        return m_connection->waitForEvent(std::chrono::steady_clock::now() + limit) != nullptr;
    }

private:
    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
};

/// Marks the word at the top left of the focused window with a double click. False when nothing gets marked.
bool markWord(RigInput& keys) {
    const auto connection = X11Server().connect();
    const auto corner = connection->reply<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(connection->get(), focusedWindow(*connection), connection->root(), 0, 0));
    if (!corner) {
        return false;
    }
    PrimaryWatch primary;
    keys.pointAt(corner->dst_x + 10, corner->dst_y + 10);
    bool marked = false;
    for (int attempt = 0; attempt < 20 && !marked;
         ++attempt) { // on a busy machine, two clicks may be too slow
        for (int click = 0; click < 2; ++click) {
            keys.pressButton();
            keys.releaseButton();
        }
        marked = primary.waitUntilTaken(std::chrono::seconds(1));
    }
    return marked;
}

/// Pastes over a selection; the text has to take its place.
void expectSelectionIsReplaced(Receiver::Kind kind) {
    setLayout("us");
    Receiver receiver(kind);
    RigInput keys;
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, QStringLiteral("old"));
    ASSERT_TRUE(receiver.waitForText(QStringLiteral("old")));
    PrimaryWatch primary;
    keys.press(Key::leftControl);
    keys.tap(Key::a);
    keys.release(Key::leftControl);
    // Users mark before they speak. What is marked while the selection changes hands, GTK unmarks again.
    ASSERT_TRUE(primary.waitUntilTaken(std::chrono::seconds(30)));
    pasteText(poster, pasteboard, QStringLiteral("new"));
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("new"))) << receiver.text().toStdString();
}

} // namespace

TEST(PasteInTerminal, somethingMarkedInIt_isNotWhatIsPasted) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Terminal);
    RigInput keys;
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, QStringLiteral("old "));
    ASSERT_TRUE(receiver.waitForText(QStringLiteral("old ")));
    ASSERT_TRUE(markWord(keys));
    ASSERT_EQ(outputOf("xclip -o -selection primary"), "old");
    pasteText(poster, pasteboard, QStringLiteral("new"));
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("old new"))) << receiver.text().toStdString();
}

TEST(PasteInGtk, selection_isReplaced) {
    expectSelectionIsReplaced(Receiver::Kind::Gtk);
}
TEST(PasteInQt, selection_isReplaced) {
    expectSelectionIsReplaced(Receiver::Kind::Qt);
}
TEST(PasteInChromium, selection_isReplaced) {
    expectSelectionIsReplaced(Receiver::Kind::Chromium);
}

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
