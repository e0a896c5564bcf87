// SPDX-License-Identifier: MIT
//
// An input method composes what the user types. What we type is no part of that.

#include "RunningInputMethod.h"
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/InputMethod.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace talvera;
using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("Hello world, this is a test 123. \"Right?\" ö, я, 漢");

/// How delivery has to bring a text to a program.
enum class Way { Typed, Pasted };

/// What the user types is composed, and what we deliver arrives as it stands.
void expectArrives(RunningInputMethod::Kind method, Receiver::Kind kind, Way way) {
    setLayout("us");
    const RunningInputMethod running(method);
    {
        Receiver control(kind, QStringLiteral("control"));
        RigInput keys;
        const auto isComposed = [](const QString& text) {
            return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
        };
        // An engine that is still being loaded lets the first keys through.
        for (int attempt = 0; attempt < 20 && !isComposed(control.text()); ++attempt) {
            keys.tap(Key::k);
            keys.tap(Key::a);
            keys.tap(method == RunningInputMethod::Kind::IbusAnthy ? Key::enter : Key::space);
            control.waitFor(isComposed, std::chrono::seconds(1));
        }
        ASSERT_TRUE(isComposed(control.text())) << control.text().toStdString();
    }
    Receiver receiver(kind);
    X11KeyEventPoster poster{X11Server()};
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    EXPECT_EQ(poster.isTypingFaithful(poster.focusedTarget()), way == Way::Typed);
    if (way == Way::Typed) {
        EXPECT_EQ(typeText(poster, sentence), PostResult::Posted);
    } else {
        pasteText(poster, pasteboard, sentence);
    }
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
}

/// Announces an input method that does nothing.
class IdleInputMethod {
public:
    IdleInputMethod() {
        xcb_connection_t* x = m_connection->get();
        const xcb_window_t window = xcb_generate_id(x);
        xcb_create_window(x, 0, window, m_connection->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        const xcb_atom_t server = m_connection->atom("@server=idle");
        xcb_set_selection_owner(x, window, server, XCB_CURRENT_TIME);
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, m_connection->root(), m_connection->atom("XIM_SERVERS"),
                            XCB_ATOM_ATOM, 32, 1, &server);
        EXPECT_TRUE(m_connection->roundTrip());
    }

private:
    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
};

void expectMixedTextArrives(Receiver::Kind kind, const std::string& layout = "us") {
    setLayout(layout);
    Receiver receiver(kind);
    const IdleInputMethod method;
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    EXPECT_EQ(typeText(poster, mixedText()), PostResult::Posted);
    EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
    EXPECT_EQ(keymap(), before);
}

} // namespace

TEST(Hangul, gtk_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::IbusHangul, Receiver::Kind::Gtk, Way::Typed);
}
TEST(Hangul, qt_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::IbusHangul, Receiver::Kind::Qt, Way::Typed);
}
TEST(Hangul, terminal_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::IbusHangul, Receiver::Kind::Terminal, Way::Pasted);
}
TEST(Anthy, gtk_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::IbusAnthy, Receiver::Kind::Gtk, Way::Typed);
}
TEST(Anthy, qt_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::IbusAnthy, Receiver::Kind::Qt, Way::Typed);
}
TEST(Pinyin, gtk_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::FcitxPinyin, Receiver::Kind::Gtk, Way::Pasted);
}
TEST(Pinyin, qt_getsTheTextAsItStands) {
    expectArrives(RunningInputMethod::Kind::FcitxPinyin, Receiver::Kind::Qt, Way::Pasted);
}

TEST(IdleMethod, gtk_getsTheTextAsItStands) {
    expectMixedTextArrives(Receiver::Kind::Gtk);
}
TEST(IdleMethod, qt_getsTheTextAsItStands) {
    expectMixedTextArrives(Receiver::Kind::Qt);
}
TEST(IdleMethod, terminalWithAnotherLayout_getsTheTextAsItStands) {
    expectMixedTextArrives(Receiver::Kind::Terminal, "de");
}
TEST(IdleMethod, chromium_getsTheTextAsItStands) {
    expectMixedTextArrives(Receiver::Kind::Chromium);
}

TEST(IdleMethod, noTarget_isTypedTo) {
    const IdleInputMethod method;
    X11KeyEventPoster poster{X11Server()};
    EXPECT_TRUE(poster.isTypingFaithful(poster.focusedTarget()));
}
TEST(IdleMethod, thatHasEnded_isNotThere) {
    const auto connection = X11Server().connect();
    {
        const IdleInputMethod method;
        EXPECT_EQ(inputMethod(*connection), InputMethod::Composes);
    }
    EXPECT_EQ(inputMethod(*connection), InputMethod::None);
}
