// SPDX-License-Identifier: MIT
// The clipboard of a sway session: who gets the text, how, and for how long.
#include "TypingTools.h"
#include "WaylandTools.h"
#include "eventually.h"

#include "linux/clipboard/ClipboardHolder.h"
#include "linux/wayland/clipboard/WaylandPasteboard.h"
#include "linux/wayland/typing/WaylandKeyEventPoster.h"
#include "receivers/Receiver.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

using namespace talvera;
using namespace talvera::test;

namespace {

using Kind = Receiver::Kind;
using test::Selection;

const QString text = QStringLiteral("größer — 😀\nand more");

class WaylandClipboard : public testing::Test {
protected:
    bool isTerminal = true;
    std::unique_ptr<WaylandKeyEventPoster> poster = WaylandKeyEventPoster::open(nullptr);
    std::optional<WaylandPasteboard> pasteboard{std::in_place, console, TALVERA_WAYLAND_COMPANION,
                                                [this] { return isTerminal; }};

    static void mark(const QString& marked) {
        outputOf("wl-copy -p " + marked.toStdString() + " >/dev/null 2>&1");
    }
    static void takeClipboard() { outputOf("wl-copy other >/dev/null 2>&1"); }

    void expectPasteArrives(Kind kind) {
        Receiver receiver(kind);
        pasteText(*poster, *pasteboard, text);
        EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
        EXPECT_TRUE(eventually([&] { return pasteboard->state().requests > 0; }));
    }
};

TEST_F(WaylandClipboard, gtk3_getsWhatIsPasted) {
    expectPasteArrives(Kind::Gtk);
}

TEST_F(WaylandClipboard, gtk4_getsWhatIsPasted) {
    expectPasteArrives(Kind::Gtk4);
}

TEST_F(WaylandClipboard, terminal_getsWhatIsPasted) {
    expectPasteArrives(Kind::WaylandTerminal);
}

TEST_F(WaylandClipboard, gtk3OnX11_getsWhatIsPasted) {
    const XProgramsOnly x11;
    expectPasteArrives(Kind::Gtk);
}

TEST_F(WaylandClipboard, qtOnX11_getsWhatIsPasted) {
    const XProgramsOnly x11;
    expectPasteArrives(Kind::Qt);
}

TEST_F(WaylandClipboard, terminalOnX11_getsWhatIsPasted) {
    expectPasteArrives(Kind::Terminal);
}

TEST_F(WaylandClipboard, bothSelections_giveTheText) {
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_EQ(selection(Selection::Clipboard), text);
    EXPECT_EQ(selection(Selection::Primary), text);
}

TEST_F(WaylandClipboard, whatIsMarked_staysSoBeforeOthersThanTerminals) {
    mark("marked");
    isTerminal = false;
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_TRUE(pasteboard->state().isHeld);
    EXPECT_EQ(selection(Selection::Clipboard), text);
    EXPECT_EQ(selection(Selection::Primary), QStringLiteral("marked"));
    isTerminal = true;
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_EQ(selection(Selection::Primary), text);
}

TEST_F(WaylandClipboard, eachRequest_isCounted) {
    EXPECT_TRUE(pasteboard->setString(text));
    const auto before = pasteboard->state();
    EXPECT_TRUE(before.isHeld);
    selection(Selection::Clipboard);
    EXPECT_EQ(pasteboard->state().requests, before.requests + 1);
    selection(Selection::Primary);
    EXPECT_EQ(pasteboard->state().requests, before.requests + 2);
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_EQ(pasteboard->state().requests, 0U);
}

TEST_F(WaylandClipboard, takenByAnother_isNotHeldAndComesBackWithTheNextText) {
    EXPECT_TRUE(pasteboard->setString(text));
    takeClipboard();
    EXPECT_TRUE(eventually([&] { return !pasteboard->state().isHeld; }));
    EXPECT_EQ(selection(Selection::Clipboard), QStringLiteral("other"));
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_EQ(selection(Selection::Clipboard), text);
}

TEST_F(WaylandClipboard, textAfterTheAgentsEnd_isStillGiven) {
    EXPECT_TRUE(pasteboard->setString(text));
    pasteboard.reset();
    EXPECT_EQ(selection(Selection::Clipboard), text);
    EXPECT_EQ(selection(Selection::Primary), text);
}

TEST_F(WaylandClipboard, readerThatStalls_holdsUpNobody) {
    const QString large = QString(2'000'000, 'x');
    EXPECT_TRUE(pasteboard->setString(large));
    QProcess stalled; // nobody takes what it prints, so it stops reading after the beginning
    stalled.start("wl-paste", {"-n"});
    ASSERT_TRUE(stalled.waitForReadyRead(30'000));
    EXPECT_EQ(selection(Selection::Clipboard).size(), large.size());
    EXPECT_TRUE(pasteboard->setString(text));
    EXPECT_EQ(selection(Selection::Clipboard), text);
}

TEST_F(WaylandClipboard, companionThatCantBeStarted_isReplacedByAThread) {
    WaylandPasteboard byThread(console, "/nowhere", [] { return true; });
    EXPECT_TRUE(byThread.setString(text));
    EXPECT_TRUE(byThread.state().isHeld);
    EXPECT_EQ(selection(Selection::Clipboard), text);
    EXPECT_EQ(selection(Selection::Primary), text);
}

TEST(WaylandClipboardTest, withoutACompositor_isNotPossibleAndSaysSo) {
    const QByteArray display = qgetenv("WAYLAND_DISPLAY");
    ::qputenv("WAYLAND_DISPLAY", "/nowhere");
    EXPECT_FALSE(WaylandPasteboard::isPossible());
    WaylandPasteboard pasteboard(console, TALVERA_WAYLAND_COMPANION, [] { return true; });
    EXPECT_FALSE(pasteboard.setString(text));
    EXPECT_FALSE(pasteboard.state().isHeld);
    ::qputenv("WAYLAND_DISPLAY", display);
}

} // namespace
