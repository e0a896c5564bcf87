// SPDX-License-Identifier: MIT
// Writing and pasting into real programs of a GNOME session, of Wayland and of X programs.
#include "../typing/KeyEventPosterContract.h"
#include "../typing/TypingTools.h"
#include "../wayland/WaylandTools.h"
#include "GnomeDesk.h"
#include "RigInput.h"
#include "keys.h"

#include "linux/wayland/gnome/GnomePasteboard.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace talvera::test {

namespace {

using Kind = Receiver::Kind;

class GnomeTyping : public testing::Test {
protected:
    void expectMixedTextIsWritten(Kind kind) {
        Receiver receiver(kind);
        ASSERT_TRUE(desk.isInFront(receiver.process(), true));
        EXPECT_TRUE(desk.poster.isTypingFaithful(desk.poster.focusedTarget()));
        EXPECT_EQ(typeText(desk.poster, mixedText()), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
    }
    void expectMixedTextIsPasted(Kind kind) {
        Receiver receiver(kind);
        ASSERT_TRUE(GnomeDesk::becomes([&] { return desk.view->focus().process == receiver.process(); }));
        EXPECT_EQ(pasteText(desk.poster, pasteboard, mixedText()), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
    }

    GnomeDesk desk;
    GnomePasteboard pasteboard{std::make_unique<X11Pasteboard>(console, TALVERA_X11_COMPANION, X11Server())};
};

TEST_F(GnomeTyping, gtk3_getsMixedText) {
    expectMixedTextIsWritten(Kind::Gtk);
}

TEST_F(GnomeTyping, gtk4_getsMixedText) {
    expectMixedTextIsWritten(Kind::Gtk4);
}

TEST_F(GnomeTyping, terminal_getsMixedText) {
    expectMixedTextIsWritten(Kind::VteTerminal);
}

TEST_F(GnomeTyping, terminalThatDropsLetters_saysThatItMustBePastedInto) {
    const Receiver foot(Kind::WaylandTerminal);
    ASSERT_TRUE(desk.isInFront(foot.process(), true));
    EXPECT_FALSE(desk.poster.isTypingFaithful(desk.poster.focusedTarget()));
}

TEST_F(GnomeTyping, xProgram_saysThatItMustBePastedInto) {
    const XProgramsOnly x11;
    const Receiver receiver(Kind::Gtk);
    ASSERT_TRUE(desk.isInFront(receiver.process(), false));
    EXPECT_FALSE(desk.poster.isTypingFaithful(desk.poster.focusedTarget()));
    EXPECT_FALSE(desk.poster.isTypingFaithful(nullptr));
}

TEST_F(GnomeTyping, heldModifiersAndCapsLock_changeNothing) {
    Receiver receiver(Kind::Gtk);
    ASSERT_TRUE(desk.isInFront(receiver.process(), true));
    RigInput keys;
    keys.tap(Key::capsLock);
    keys.press(Key::leftControl);
    keys.press(Key::leftAlt);
    EXPECT_EQ(typeText(desk.poster, mixedText()), PostResult::Posted);
    keys.release(Key::leftAlt);
    keys.release(Key::leftControl);
    keys.tap(Key::capsLock);
    EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
}

TEST_F(GnomeTyping, gtk3_isPastedInto) {
    expectMixedTextIsPasted(Kind::Gtk);
}

TEST_F(GnomeTyping, gtk4_isPastedInto) {
    expectMixedTextIsPasted(Kind::Gtk4);
}

TEST_F(GnomeTyping, terminal_isPastedInto) {
    expectMixedTextIsPasted(Kind::WaylandTerminal);
}

TEST_F(GnomeTyping, xProgram_isPastedInto) {
    const XProgramsOnly x11;
    expectMixedTextIsPasted(Kind::Gtk);
}

TEST_F(GnomeTyping, xTerminal_isPastedInto) {
    expectMixedTextIsPasted(Kind::Terminal);
}

TEST_F(GnomeTyping, textThatNobodyPastes_countsNoRequest) {
    const Receiver receiver(Kind::Gtk);
    ASSERT_TRUE(pasteboard.setString("unread"));
    const auto before = pasteboard.state();
    EXPECT_TRUE(before.isHeld);
    // The Shell looks at what comes on the clipboard, too; when it answers it has done that.
    for (int round = 0; round < 20; ++round)
        ASSERT_TRUE(desk.bus->ask(QStringLiteral("Focus"), {}));
    EXPECT_EQ(pasteboard.state().requests, before.requests);
}

struct GnomeWritingDesk {
    static constexpr bool writesWithoutKeys = true;

    GnomeDesk desk;
    GnomeKeyEventPoster& poster = desk.poster;
    GnomePasteboard pasteboard{std::make_unique<X11Pasteboard>(console, TALVERA_X11_COMPANION, X11Server())};
    Receiver receiver{Kind::Gtk};
    bool isReady = desk.isInFront(receiver.process(), true);
    std::optional<Receiver> second{};

    bool showsText(const QString& expected) { return receiver.waitForText(expected); }
    QString text() const { return receiver.text(); }
    bool hasKeysDown() { return receiver.waitForKeysDown(true); }
    bool isAtRest() { return receiver.waitForKeysDown(false); }
    QString clipboard() {
        const std::string read = "xclip -o -selection clipboard -t ";
        return QString::fromStdString(outputOf("{ " + read + "TARGETS | grep -qx UTF8_STRING && " + read +
                                               "UTF8_STRING; } 2>/dev/null"));
    }
    void putImageOnClipboard() {
        outputOf("printf '\\211PNG' | xclip -i -selection clipboard -t image/png >/dev/null 2>&1");
    }
    bool offersImage() {
        return outputOf("xclip -o -selection clipboard -t TARGETS").find("image/png") != std::string::npos;
    }
    void openAnotherWindow() { second.emplace(Kind::WaylandTerminal, QStringLiteral("second")); }
    QString textOfAnotherWindow() { return second->text(); }
};

using Desks = testing::Types<GnomeWritingDesk>;
INSTANTIATE_TYPED_TEST_SUITE_P(OnGnome, KeyEventPosterContract, Desks);
INSTANTIATE_TYPED_TEST_SUITE_P(OnGnome, PasteboardContract, Desks);

} // namespace

} // namespace talvera::test
