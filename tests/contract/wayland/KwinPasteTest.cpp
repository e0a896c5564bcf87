// SPDX-License-Identifier: MIT
// Pasting in a Plasma session, into programs of Wayland and of X.
#include "KeysInWindow.h"
#include "PrintQt.h"
#include "TypingTools.h"
#include "WaylandTools.h"
#include "linux/wayland/clipboard/WaylandPasteboard.h"
#include "linux/wayland/kwin/KwinKeyEventPoster.h"
#include "linux/wayland/kwin/KwinWindows.h"
#include "receivers/Receiver.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>

namespace talvera::test {

namespace {

using Kind = Receiver::Kind;

const QString text = QStringLiteral("größer — 😀\nand more");

/// KWin lets a program press keys that a desktop file names. It looks for new files once in a while.
std::shared_ptr<KwinKeyboard> allowedKeyboard() {
    const auto directory = qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications");
    QDir().mkpath(directory);
    QFile file(directory + QStringLiteral("/talvera-test.desktop"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error("no desktop file");
    file.write("[Desktop Entry]\nType=Application\nName=Test\nNoDisplay=true\nExec=" +
               QFile::symLinkTarget("/proc/self/exe").toUtf8() +
               "\nX-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n");
    file.close();
    auto keyboard = std::make_shared<KwinKeyboard>();
    if (!KeysInWindow::becomes([&] { return keyboard->get() != nullptr; }))
        throw std::runtime_error("KWin lets us press no keys");
    return keyboard;
}

bool isVersion6() {
    const auto about =
        outputOf("gdbus call --session -d org.kde.KWin -o /KWin -m org.kde.KWin.supportInformation");
    const bool is6 = about.find("KWin version: 6") != std::string::npos;
    if (!is6 && about.find("KWin version: 5") == std::string::npos)
        throw std::runtime_error("KWin of a version that nobody knows");
    return is6;
}

class KwinPaste : public testing::Test {
protected:
    bool isInFront(pid_t pid) const {
        return KeysInWindow::becomes([&] { return windows->active().value_or(KwinWindow()).pid == pid; });
    }

    void expectPasteArrives(Kind kind) {
        Receiver receiver(kind);
        ASSERT_TRUE(isInFront(receiver.process()));
        const auto target = poster.focusedTarget();
        ASSERT_TRUE(pasteboard.setString(text));
        EXPECT_FALSE(poster.isTypingFaithful(target));
        EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::Posted);
        EXPECT_EQ(poster.postPaste(KeyPhase::Up, target), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
    }

    std::shared_ptr<KwinWindows> windows = std::make_shared<KwinWindows>(std::make_shared<KwinGuard>());
    KwinKeyEventPoster poster{allowedKeyboard(), windows};
    WaylandPasteboard pasteboard{console, TALVERA_WAYLAND_COMPANION, [] { return true; }};
};

TEST_F(KwinPaste, gtk3_getsTheText) {
    expectPasteArrives(Kind::Gtk);
}

TEST_F(KwinPaste, gtk4_getsTheText) {
    expectPasteArrives(Kind::Gtk4);
}

TEST_F(KwinPaste, qt_getsTheText) {
    expectPasteArrives(Kind::Qt);
}

TEST_F(KwinPaste, terminal_getsTheText) {
    expectPasteArrives(Kind::WaylandTerminal);
}

TEST_F(KwinPaste, gtk3OnX11_getsTheText) {
    const XProgramsOnly x11;
    expectPasteArrives(Kind::Gtk);
}

TEST_F(KwinPaste, terminalOnX11_getsTheText) {
    expectPasteArrives(Kind::Terminal);
}

TEST_F(KwinPaste, modifierThatTheUserHolds_isLetGoBeforeWhereThatCanBe) {
    KeysInWindow keys;
    ASSERT_TRUE(KeysInWindow::becomes([&] { return windows->active().has_value(); }));
    const auto target = poster.focusedTarget();
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target),
              PostResult::Posted); // KWin passes on each first letting go
    keys.takeKeys();
    keys.press({Key::leftControl});
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::Posted);
    EXPECT_EQ(poster.postPaste(KeyPhase::Up, target), PostResult::Posted);
    keys.release({Key::leftControl});
    // Version 6 keeps a key down as long as one keyboard holds it.
    EXPECT_EQ(keys.takeKeys(), isVersion6() ? (QStringList{"+37", "+50", "+118", "-118", "-50", "-37"})
                                            : (QStringList{"+37", "-37", "+50", "+118", "-118", "-50"}));
}

TEST_F(KwinPaste, chord_isOverBeforeTheAgentCouldDie) {
    KeysInWindow keys;
    ASSERT_TRUE(KeysInWindow::becomes([&] { return windows->active().has_value(); }));
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, poster.focusedTarget()), PostResult::Posted);
    const auto heard = keys.takeKeys();
    EXPECT_EQ(heard.mid(heard.indexOf("+50")), (QStringList{"+50", "+118", "-118", "-50"}));
}

TEST_F(KwinPaste, otherWindow_getsNothing) {
    KeysInWindow first;
    ASSERT_TRUE(KeysInWindow::becomes([&] { return windows->active().has_value(); }));
    const auto target = poster.focusedTarget();
    KeysInWindow second;
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, target), PostResult::TargetLost);
    EXPECT_EQ(second.takeKeys(), QStringList());
}

} // namespace

} // namespace talvera::test
