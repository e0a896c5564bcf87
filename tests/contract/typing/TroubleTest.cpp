// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "linux/x11/typing/X11Keyboard.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using Clock = std::chrono::steady_clock;

/// More characters than there are spare keys, so that the keymap has to change again and again.
const QString manySymbols =
    QStringLiteral("漢字かな交じり文を書くのは難しい。안녕하세요 세계 नमस्ते दुनिया съешь ещё");

void expectArrives(Receiver& receiver, const QString& text) {
    EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
}

void expectStoppedReceiverMissesNothing(Receiver::Kind kind) {
    setLayout("us");
    Receiver receiver(kind);
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    std::thread freeze;
    typeText(poster, mixedText(), [&](qsizetype chunk) {
        if (chunk == 130) {
            receiver.signal(SIGSTOP);
            freeze = std::thread([&receiver] {
                std::this_thread::sleep_for(std::chrono::seconds(1));
                receiver.signal(SIGCONT);
            });
        }
    });
    freeze.join();
    expectArrives(receiver, mixedText());
    EXPECT_EQ(keymap(), before);
}

/// The keymap of one device.
std::string keymapOf(std::uint16_t device) {
    return outputOf("xkbcomp -i " + std::to_string(device) + " \"$DISPLAY\" - 2>/dev/null");
}

/// Cuts all connections of this process to the X server, as if it had died.
void cutConnections() {
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        sockaddr_un peer{};
        socklen_t length = sizeof peer;
        const bool isUnix = ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) == 0 &&
                            peer.sun_family == AF_UNIX;
        // The path of an abstract socket begins with a null byte.
        if (isUnix &&
            std::string(peer.sun_path, sizeof peer.sun_path).find(".X11-unix") != std::string::npos) {
            ::shutdown(descriptor, SHUT_RDWR);
        }
    }
}

/// The two keyboards get layouts of their own, and both are used while we type.
void expectKeyboardsKeepTheirLayouts(Receiver::Kind kind) {
    setLayout("us");
    const auto connection = X11Server().connect();
    const auto keyboard = X11Keyboard::open(*connection);
    std::vector<std::uint16_t> users;
    for (const std::uint16_t device : keyboard->devices()) {
        if (device > keyboard->typingDevice()) { // the master and the typing device come first
            users.push_back(device);
        }
    }
    ASSERT_EQ(users.size(), 2U);
    outputOf("setxkbmap -device " + std::to_string(users[0]) + " -layout de");
    outputOf("setxkbmap -device " + std::to_string(users[1]) + " -layout fr");
    std::vector<std::string> before;
    for (const std::uint16_t device : users) {
        before.push_back(keymapOf(device));
    }
    ASSERT_NE(before[0], before[1]);

    Receiver receiver(kind);
    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, mixedText(), [&](qsizetype chunk) {
        if (chunk % 5 == 0) { // the layout in use is the one of the keyboard used last
            keys.tap(Key::leftShift, static_cast<int>(chunk % 2));
        }
    });
    expectArrives(receiver, mixedText());
    EXPECT_EQ(keymapOf(users[0]), before[0]);
    EXPECT_EQ(keymapOf(users[1]), before[1]);
    setLayout("us");
}

} // namespace

TEST(StoppedReceiver, gtk_missesNothing) {
    expectStoppedReceiverMissesNothing(Receiver::Kind::Gtk);
}
TEST(StoppedReceiver, qt_missesNothing) {
    expectStoppedReceiverMissesNothing(Receiver::Kind::Qt);
}
TEST(StoppedReceiver, terminal_missesNothing) {
    expectStoppedReceiverMissesNothing(Receiver::Kind::Terminal);
}

TEST(ChangingKeyboard, layoutReplacedMeanwhile_textIsRightAndTheNewLayoutStays) {
    setLayout("de");
    const std::string german = keymap();
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, mixedText(), [&](qsizetype chunk) {
        if (chunk == 90) {
            setLayout("de");
        }
    });
    expectArrives(receiver, mixedText());
    EXPECT_EQ(keymap(), german);
}

TEST(ChangingKeyboard, layoutReplacedSinceThePreparation_textIsRight) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    X11KeyEventPoster poster{X11Server()};
    poster.prepare();
    setLayout("fr");
    const QString text = QStringLiteral("What a QUIZ: 1 + 2, é, ж");
    typeText(poster, text);
    expectArrives(receiver, text);
    setLayout("us");
}

TEST(ChangingKeyboard, userSwitchesToAnotherLayoutMeanwhile_textIsRight) {
    setLayout("us,ru -option grp:alt_shift_toggle");
    Receiver receiver(Receiver::Kind::Qt);
    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
    const QString text = QStringLiteral("hello World, привет Мир, hello again");
    typeText(poster, text, [&](qsizetype chunk) {
        if (chunk == 5 || chunk == 20) {
            keys.press(Key::leftAlt);
            keys.press(Key::leftShift);
            keys.release(Key::leftShift);
            keys.release(Key::leftAlt);
        }
    });
    expectArrives(receiver, text);
    setLayout("us -option");
}

TEST(ChangingKeyboard, secondGroupInUse_textIsRight) {
    setLayout("us,ru -option grp:alt_shift_toggle");
    Receiver receiver(Receiver::Kind::Gtk);
    RigInput keys;
    keys.press(Key::leftAlt);
    keys.press(Key::leftShift);
    keys.release(Key::leftShift);
    keys.release(Key::leftAlt);
    X11KeyEventPoster poster{X11Server()};
    const QString text = QStringLiteral("hello World, привет Мир");
    typeText(poster, text);
    expectArrives(receiver, text);
    keys.tap(Key::a);
    expectArrives(receiver, text + QStringLiteral("ф"));
    setLayout("us -option");
}

TEST(KeyboardsWithLayoutsOfTheirOwn, gtk_textIsRightAndTheyKeepThem) {
    expectKeyboardsKeepTheirLayouts(Receiver::Kind::Gtk);
}

TEST(KeyboardsWithLayoutsOfTheirOwn, qt_textIsRightAndTheyKeepThem) {
    expectKeyboardsKeepTheirLayouts(Receiver::Kind::Qt);
}

TEST(KeyboardsWithLayoutsOfTheirOwn, terminal_textIsRightAndTheyKeepThem) {
    expectKeyboardsKeepTheirLayouts(Receiver::Kind::Terminal);
}

TEST(ChangingKeyboard, manyLayouts_typeAsciiAndMore) {
    const QString text = QStringLiteral("Aa'b\"c`d~e^f@g{h}i[j]k\\l|m<n>o äÖß é ñ € ж א λ");
    for (const char* layout : {"us -variant intl", "us -variant altgr-intl", "gb", "de -variant neo",
                               "fr -variant bepo", "cz", "il", "gr", "jp", "ch", "tr -variant f", "es"}) {
        SCOPED_TRACE(layout);
        setLayout(layout);
        const std::string before = keymap();
        Receiver receiver(Receiver::Kind::Qt);
        X11KeyEventPoster poster{X11Server()};
        typeText(poster, text);
        expectArrives(receiver, text);
        EXPECT_EQ(keymap(), before);
    }
    setLayout("us");
}

TEST(Trouble, oneCharacterWithMoreAccentsThanThereAreSpareKeys_arrives) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    QString text = QStringLiteral("a");
    for (char16_t accent = 0x0300; accent < 0x0300 + 40; ++accent) {
        text += QChar(accent);
    }
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, text);
    expectArrives(receiver, text);
}

TEST(Trouble, windowClosedMeanwhile_typingEndsSoonAndLeavesNothingBehind) {
    setLayout("us");
    std::optional<Receiver> receiver(Receiver::Kind::Gtk);
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    const auto start = Clock::now();
    typeAnywhere(poster, manySymbols, [&](qsizetype chunk) {
        if (chunk == 10) {
            receiver.reset();
        }
    });
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(15));
    EXPECT_EQ(keymap(), before);
    EXPECT_EQ(keyboardState(), "");
}

TEST(Trouble, focusMovesOnWhileTheFirstTargetIsSlow_eachCharacterArrivesSomewhere) {
    setLayout("us");
    Receiver first(Receiver::Kind::Gtk, QStringLiteral("first"));
    std::optional<Receiver> second;
    std::thread freeze;
    X11KeyEventPoster poster{X11Server()};
    typeAnywhere(poster, manySymbols, [&](qsizetype chunk) {
        if (chunk == 0) { // it has been told of the new symbols, but has not looked at them yet
            first.signal(SIGSTOP);
        } else if (chunk == 9) {
            second.emplace(Receiver::Kind::Qt, QStringLiteral("second"));
            freeze = std::thread([&first] {
                std::this_thread::sleep_for(std::chrono::seconds(1));
                first.signal(SIGCONT);
            });
        }
    });
    freeze.join();
    EXPECT_TRUE(second->waitFor([&](const QString& text) { return first.text() + text == manySymbols; }))
        << first.text().toStdString() << " | " << second->text().toStdString();
}

TEST(Trouble, hungTarget_delaysTypingOnce) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Gtk);
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    const auto start = Clock::now();
    typeText(poster, manySymbols, [&](qsizetype chunk) {
        if (chunk == 2) {
            receiver.signal(SIGSTOP);
        }
    });
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(keymap(), before);
}

TEST(Trouble, noXServer_noEventCanBeMade) {
    X11KeyEventPoster poster{X11Server(":4711")};
    const auto session = poster.beginTyping({QStringLiteral("a")}, nullptr);
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(session->post(0, KeyPhase::Up), PostResult::CutOff);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, nullptr), PostResult::CutOff);
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server(":4711"));
    EXPECT_FALSE(pasteboard.setString(QStringLiteral("lost, but nobody hangs")));
    EXPECT_EQ(console.logged(), QStringList{"[pasteboard] the clipboard can't be set"});
}

TEST(Trouble, xServerGoneMeanwhile_noEventCanBeMade) {
    setLayout("us");
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    const auto session = poster.beginTyping({QStringLiteral("a"), QStringLiteral("я")}, nullptr);
    ASSERT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    ASSERT_EQ(session->post(0, KeyPhase::Up), PostResult::Posted);
    cutConnections();
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, nullptr), PostResult::CutOff);
    // What it couldn't pay back any more is paid by the next one.
    const X11KeyEventPoster next{X11Server()};
    EXPECT_EQ(keymap(), before);
}
