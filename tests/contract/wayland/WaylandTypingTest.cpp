// SPDX-License-Identifier: MIT
// Typing into real programs of a sway session, of Wayland and of X programs.
#include "TypingTools.h"
#include "WaylandTools.h"

#include "linux/wayland/typing/WaylandKeyEventPoster.h"
#include "linux/x11/typing/FocusedXProgram.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using Kind = Receiver::Kind;

class WaylandTyping : public testing::Test {
protected:
    WaylandTyping() {
        if (!poster)
            throw std::runtime_error("the compositor has no keyboard for us");
    }

    void expectMixedTextArrives(Receiver& receiver) {
        EXPECT_EQ(typeText(*poster, mixedText()), PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
    }
    void expectMixedTextArrives(Kind kind) {
        Receiver receiver(kind);
        expectMixedTextArrives(receiver);
    }

    // Before the programs, which hear of a new keyboard only after a while.
    FocusedXProgram xProgram{X11Server()};
    std::unique_ptr<WaylandKeyEventPoster> poster =
        WaylandKeyEventPoster::open([this] { xProgram.awaitReading(); });
};

using WaylandTypingIntoX = WaylandTyping;
using WaylandTypingTrouble = WaylandTyping;

TEST_F(WaylandTyping, gtk3_getsMixedText) {
    expectMixedTextArrives(Kind::Gtk);
}

TEST_F(WaylandTyping, gtk4_getsMixedText) {
    expectMixedTextArrives(Kind::Gtk4);
}

TEST_F(WaylandTyping, qt_getsMixedText) {
    ::qputenv("QT_QPA_PLATFORM", "wayland");
    std::optional<Receiver> receiver(Kind::Qt);
    ::qunsetenv("QT_QPA_PLATFORM");
    expectMixedTextArrives(*receiver);
}

TEST_F(WaylandTyping, terminal_getsMixedText) {
    expectMixedTextArrives(Kind::WaylandTerminal);
}

TEST_F(WaylandTypingIntoX, gtk3OnX11_getsMixedText) {
    const XProgramsOnly x11;
    expectMixedTextArrives(Kind::Gtk);
}

TEST_F(WaylandTypingIntoX, qtOnX11_getsMixedText) {
    const XProgramsOnly x11;
    expectMixedTextArrives(Kind::Qt);
}

TEST_F(WaylandTypingIntoX, terminalOnX11_getsMixedText) {
    expectMixedTextArrives(Kind::Terminal);
}

TEST_F(WaylandTypingTrouble, textAfterText_keepsItsCharacters) {
    Receiver receiver(Kind::Gtk);
    QString all;
    for (int number = 0; number < 8; ++number) {
        QString text;
        for (int character = 0; character < 12; ++character)
            text += QChar(0x4e00 + 12 * number + character);
        EXPECT_EQ(typeText(*poster, text), PostResult::Posted);
        all += text;
    }
    EXPECT_TRUE(receiver.waitForText(all)) << receiver.text().toStdString();
}

/// A keyboard that sway takes for one of the user's, with a layout of its own.
class UsersKeyboard {
public:
    explicit UsersKeyboard(const char* layout) {
        const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
            xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
        const xkb_rule_names names{
            .rules = nullptr, .model = nullptr, .layout = layout, .variant = nullptr, .options = nullptr};
        const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
            xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
        const std::unique_ptr<char, decltype(&std::free)> text(
            xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), std::free);
        if (!m_keyboard || !m_keyboard->useKeymap(text.get()))
            throw std::runtime_error("no keyboard for the user");
    }

    void hold(std::uint32_t key, std::uint32_t modifiers) {
        EXPECT_TRUE(m_keyboard->press(key) && m_keyboard->setModifiers(modifiers) &&
                    m_connection.roundTrip());
    }
    void lockCaps() {
        EXPECT_TRUE(m_keyboard->press(KEY_CAPSLOCK) && m_keyboard->release(KEY_CAPSLOCK) &&
                    m_keyboard->setModifiers(0, capsLock) && m_connection.roundTrip());
    }
    void strike(std::uint32_t key) {
        EXPECT_TRUE(m_keyboard->press(key) && m_keyboard->release(key) && m_connection.roundTrip());
    }

    static constexpr std::uint32_t capsLock = 2; ///< in every keymap
    static constexpr std::uint32_t control = 4;
    static constexpr std::uint32_t alt = 8;

private:
    WaylandConnection m_connection;
    std::unique_ptr<VirtualKeyboard> m_keyboard = VirtualKeyboard::open(m_connection);
};

TEST_F(WaylandTypingTrouble, modifiersHeldByTheUser_haveNoPartInIt) {
    UsersKeyboard user("us");
    Receiver receiver(Kind::Gtk);
    user.hold(KEY_LEFTCTRL, UsersKeyboard::control);
    user.hold(KEY_LEFTALT, UsersKeyboard::control | UsersKeyboard::alt);
    expectMixedTextArrives(receiver);
}

TEST_F(WaylandTypingTrouble, capsLockAndLayoutOfTheUser_haveNoPartInIt) {
    UsersKeyboard user("ru");
    Receiver receiver(Kind::WaylandTerminal);
    user.lockCaps();
    expectMixedTextArrives(receiver);
}

TEST_F(WaylandTypingTrouble, usersOwnKeys_comeInHisLayoutBeforeAndAfter) {
    UsersKeyboard user("ru");
    Receiver receiver(Kind::Gtk);
    user.strike(KEY_A);
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("ф")));
    EXPECT_EQ(typeText(*poster, QStringLiteral("aä")), PostResult::Posted);
    user.strike(KEY_A);
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("фaäф"))) << receiver.text().toStdString();
}

TEST_F(WaylandTypingTrouble, windowThatComesInBetween_getsNothing) {
    Receiver receiver(Kind::Gtk);
    std::optional<Receiver> other;
    const auto end = typeText(*poster, QStringLiteral("abcdef"), [&](qsizetype chunk) {
        if (chunk == 3)
            other.emplace(Kind::WaylandTerminal, QStringLiteral("other"));
    });
    EXPECT_EQ(end, PostResult::TargetLost);
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("abc"))) << receiver.text().toStdString();
    EXPECT_EQ(other->text(), QString());
}

TEST_F(WaylandTypingTrouble, windowThatCloses_isNotReplacedByTheOneBehindIt) {
    Receiver behind(Kind::Gtk, QStringLiteral("behind"));
    std::optional<Receiver> receiver(std::in_place, Kind::WaylandTerminal);
    const auto end = typeText(*poster, QStringLiteral("abcdef"), [&](qsizetype chunk) {
        if (chunk == 3)
            receiver.reset();
    });
    EXPECT_EQ(end, PostResult::TargetLost);
    EXPECT_EQ(behind.text(), QString());
}

TEST_F(WaylandTypingTrouble, emptyWorkspace_isNoTarget) {
    tellSway("workspace empty");
    const auto target = poster->focusedTarget();
    const auto session = poster->beginTyping({QStringLiteral("a")}, target);
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_EQ(poster->postPaste(KeyPhase::Down, target), PostResult::TargetLost);
    tellSway("workspace 1");
}

TEST_F(WaylandTypingTrouble, thread_sleepsWhileNothingHappens) {
    Receiver receiver(Kind::Gtk);
    poster->focusedTarget();
    timespec before{};
    timespec after{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
    std::this_thread::sleep_for(std::chrono::seconds(1));
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
    const auto spent = (after.tv_sec - before.tv_sec) * 1e3 + (after.tv_nsec - before.tv_nsec) / 1e6;
    EXPECT_LT(spent, 100);
}

TEST_F(WaylandTypingTrouble, withoutACompositor_thereIsNoPoster) {
    EXPECT_EQ(WaylandKeyEventPoster::open(nullptr, "/nowhere"), nullptr);
}

} // namespace
