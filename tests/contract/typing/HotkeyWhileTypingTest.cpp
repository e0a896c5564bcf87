// SPDX-License-Identifier: MIT
// Our own hotkeys and our own typing, on one keyboard at the same time.
#include "RealKeyboard.h"
#include "RecordingConsole.h"
#include "TypingTools.h"
#include "hotkeys/HotkeyManager.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace talvera;
using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("An Apple, A BANANA and a äpfel");

class HotkeyWhileTyping : public testing::Test {
protected:
    using Calls = std::vector<std::string>;

    HotkeyWhileTyping() {
        hotkey.onPressStart = [this] { calls.emplace_back("start"); };
        hotkey.onPressEnd = [this] { calls.emplace_back("end"); };
    }

    void install(const HotkeyBinding& binding) {
        hotkey.setBinding(binding);
        hotkey.install();
        ASSERT_NE(hotkey.eventTap(), nullptr);
        keyboard.settle();
    }

    /// The callbacks since the last call.
    Calls takeCalls() {
        keyboard.settle();
        keyboard.settle(); // what has been told calls back in a later turn
        return std::exchange(calls, {});
    }

    /// The receiver has to outlive what the user presses next: a chord is nobody's while no window has the
    /// focus.
    void expectTypedAndPastedInto(Receiver& receiver) {
        typeText(poster, sentence);
        EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
        pasteText(poster, pasteboard, QStringLiteral(" Aa"));
        EXPECT_TRUE(receiver.waitForText(sentence + QStringLiteral(" Aa"))) << receiver.text().toStdString();
        EXPECT_EQ(takeCalls(), Calls{});
    }

    // The main thread types here, so it doesn't answer for a while.
    RealKeyboard keyboard{seconds(120)};
    RecordingConsole console;
    HotkeyManager hotkey{keyboard.actor(), keyboard.taps(), console};
    X11KeyEventPoster poster{X11Server()};
    X11Pasteboard pasteboard{test::console, TALVERA_X11_COMPANION, X11Server()};
    Calls calls;
};

TEST_F(HotkeyWhileTyping, shiftAndALetter_isTypedByUsAndStaysTheUsers) {
    install(HotkeyBinding::chord(KeyFlag::Shift, VirtualKey::A));
    Receiver receiver(Receiver::Kind::Qt);
    expectTypedAndPastedInto(receiver);
    keyboard.keys.press(Key::leftShift);
    keyboard.keys.tap(Key::a);
    keyboard.keys.release(Key::leftShift);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(HotkeyWhileTyping, letterWithoutModifiers_isTypedByUsAndStaysTheUsers) {
    install(HotkeyBinding::chord(0, VirtualKey::A));
    Receiver receiver(Receiver::Kind::Gtk);
    expectTypedAndPastedInto(receiver);
    keyboard.keys.tap(Key::a);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(HotkeyWhileTyping, space_isTypedByUsAndStaysTheUsers) {
    install(HotkeyBinding::chord(0, VirtualKey::Space));
    Receiver receiver(Receiver::Kind::Terminal);
    expectTypedAndPastedInto(receiver);
    keyboard.keys.tap(Key::space);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(HotkeyWhileTyping, insert_isPastedWithByUsAndStaysTheUsers) {
    for (const auto& [modifiers, kind] : {std::pair(std::uint64_t(0), Receiver::Kind::Terminal),
                                          std::pair(std::uint64_t(KeyFlag::Shift), Receiver::Kind::Gtk)}) {
        install(HotkeyBinding::chord(modifiers, VirtualKey::Insert));
        Receiver receiver(kind);
        expectTypedAndPastedInto(receiver);
        keyboard.keys.press(Key::leftShift);
        keyboard.keys.tap(Key::insert);
        keyboard.keys.release(Key::leftShift);
        EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    }
}

TEST_F(HotkeyWhileTyping, hotkeyGivenUp_leavesItsKeyToTheLayoutAgain) {
    install(HotkeyBinding::chord(0, VirtualKey::A));
    hotkey.setBinding(HotkeyBinding());
    Receiver receiver(Receiver::Kind::Qt);
    expectTypedAndPastedInto(receiver);
    EXPECT_EQ(outputOf("xprop -root _TALVERA_RESERVED_KEYS"), "_TALVERA_RESERVED_KEYS:  not found.\n");
}

TEST_F(HotkeyWhileTyping, capsLockTappedTwice_startsOnceAndEndsOnce) {
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::CapsLock));
    Receiver receiver(Receiver::Kind::Qt);
    typeText(poster, sentence, [this](qsizetype chunk) {
        if (chunk == 4 || chunk == 16)
            keyboard.keys.tap(Key::capsLock);
    });
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_EQ(keyboardState(), "");
}

TEST_F(HotkeyWhileTyping, capsLockHeldForAWhile_startsAndEndsWithTheNextTap) {
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::CapsLock));
    Receiver receiver(Receiver::Kind::Qt);
    typeText(poster, sentence, [this](qsizetype chunk) {
        if (chunk == 4)
            keyboard.keys.press(Key::capsLock);
        if (chunk == 10)
            keyboard.keys.release(Key::capsLock);
    });
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
    EXPECT_EQ(takeCalls(), Calls{"start"});
    keyboard.keys.tap(Key::capsLock);
    EXPECT_EQ(takeCalls(), Calls{"end"});
    EXPECT_EQ(keyboardState(), "");
}

} // namespace
