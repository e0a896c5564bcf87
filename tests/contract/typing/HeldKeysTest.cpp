// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

const QString sentence = QStringLiteral("hello Wörld 123 @ мир");

/// The user's keyboards, a real application and our own typing.
class TypingScene {
public:
    explicit TypingScene(Receiver::Kind kind = Receiver::Kind::Qt, const std::string& layout = "us")
        : m_layout((setLayout(layout), layout))
        , receiver(kind) {}

    /// What arrives is `expected`, and after that the user's own keys write what they always do.
    void expectArrived(const QString& expected = sentence) {
        EXPECT_EQ(result, PostResult::Posted);
        EXPECT_TRUE(receiver.waitForText(expected)) << receiver.text().toStdString();
        EXPECT_EQ(keyboardState(), "");
        keys.tap(Key::a);
        EXPECT_TRUE(receiver.waitForText(expected + QLatin1Char('a'))) << receiver.text().toStdString();
    }

private:
    std::string m_layout;

public:
    Receiver receiver;
    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
    PostResult result = PostResult::Posted; ///< of what has been typed last
};

void expectHeldKeyStaysOut(Receiver::Kind kind, XKeycode key, const std::string& layout = "us") {
    TypingScene scene(kind, layout);
    scene.keys.press(key);
    scene.result = typeText(scene.poster, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    scene.keys.release(key);
    scene.expectArrived();
}

} // namespace

#define TALVERA_HELD(suite, kind)                                                                            \
    TEST(suite, shift_staysOut) {                                                                            \
        expectHeldKeyStaysOut(kind, Key::leftShift);                                                         \
    }                                                                                                        \
    TEST(suite, control_staysOut) {                                                                          \
        expectHeldKeyStaysOut(kind, Key::leftControl);                                                       \
    }                                                                                                        \
    TEST(suite, alt_staysOutAndOpensNoMenu) {                                                                \
        expectHeldKeyStaysOut(kind, Key::leftAlt);                                                           \
    }                                                                                                        \
    TEST(suite, super_staysOut) {                                                                            \
        expectHeldKeyStaysOut(kind, Key::leftSuper);                                                         \
    }                                                                                                        \
    TEST(suite, altGr_staysOut) {                                                                            \
        expectHeldKeyStaysOut(kind, Key::rightAlt, "de");                                                    \
    }

TALVERA_HELD(HeldInQt, Receiver::Kind::Qt)
TALVERA_HELD(HeldInGtk, Receiver::Kind::Gtk)
TALVERA_HELD(HeldInTerminal, Receiver::Kind::Terminal)

TEST(HeldInQt, keysOfTheRightHand_stayOut) {
    for (const auto key : {Key::rightShift, Key::rightControl, Key::rightSuper, Key::rightAlt}) {
        expectHeldKeyStaysOut(Receiver::Kind::Qt, key);
    }
}

TEST(MovingKeys, shiftPressedAndReleasedMeanwhile_staysOut) {
    TypingScene scene;
    scene.result = typeText(scene.poster, sentence, [&](qsizetype chunk) {
        if (chunk % 4 == 1) {
            scene.keys.press(Key::leftShift);
        } else if (chunk % 4 == 3) {
            scene.keys.release(Key::leftShift);
        }
    });
    scene.expectArrived();
}

TEST(MovingKeys, heldModifierReleasedMeanwhile_isNotStuck) {
    TypingScene scene;
    scene.keys.press(Key::leftShift);
    scene.result = typeText(scene.poster, sentence, [&](qsizetype chunk) {
        if (chunk == 7) {
            scene.keys.release(Key::leftShift);
        }
    });
    scene.expectArrived();
}

TEST(MovingKeys, modifierHeldBeyondTheEnd_isNotStuckWhenReleased) {
    TypingScene scene;
    scene.result = typeText(scene.poster, sentence, [&](qsizetype chunk) {
        if (chunk == 7) {
            scene.keys.press(Key::leftControl);
        }
    });
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    scene.keys.release(Key::leftControl);
    scene.expectArrived();
}

TEST(MovingKeys, heldLetter_stopsRepeating) {
    TypingScene scene;
    scene.keys.press(Key::a);
    const QString expected = QLatin1Char('a') + sentence;
    ASSERT_TRUE(scene.receiver.waitForText(QStringLiteral("a")));
    scene.result = typeText(scene.poster, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(expected)) << scene.receiver.text().toStdString();
    scene.keys.release(Key::a);
    scene.expectArrived(expected);
}

TEST(MovingKeys, secondKeyboardInUse_makesNoDifference) {
    TypingScene scene;
    scene.result = typeText(scene.poster, mixedText(), [&](qsizetype chunk) {
        const int keyboard = static_cast<int>(chunk % 2);
        if (chunk % 8 < 2) {
            scene.keys.press(Key::leftShift, keyboard);
        } else if (chunk % 8 >= 6) {
            scene.keys.release(Key::leftShift, keyboard);
        }
    });
    scene.keys.release(Key::leftShift, 0);
    scene.keys.release(Key::leftShift, 1);
    scene.expectArrived(mixedText());
}

TEST(Locks, capsLock_makesNoDifferenceAndStaysOn) {
    TypingScene scene;
    scene.keys.tap(Key::capsLock);
    ASSERT_EQ(keyboardState(), "locked 2 ");
    scene.result = typeText(scene.poster, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    EXPECT_EQ(keyboardState(), "locked 2 ");
    scene.keys.tap(Key::capsLock);
    scene.expectArrived();
}

TEST(Locks, capsLockPressedMeanwhile_staysOutAndIsOnAfterwards) {
    TypingScene scene;
    scene.result = typeText(scene.poster, sentence, [&](qsizetype chunk) {
        if (chunk == 7) {
            scene.keys.tap(Key::capsLock);
        }
    });
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    EXPECT_EQ(keyboardState(), "locked 2 ");
    scene.keys.tap(Key::capsLock);
    scene.expectArrived();
}

TEST(Locks, capsLockSwitchedOffMeanwhile_isOffAfterwards) {
    TypingScene scene;
    scene.keys.tap(Key::capsLock);
    scene.result = typeText(scene.poster, sentence, [&](qsizetype chunk) {
        if (chunk == 7) {
            scene.keys.tap(Key::capsLock);
        }
    });
    scene.expectArrived();
}

TEST(Locks, numLock_isLeftAlone) {
    TypingScene scene;
    scene.keys.tap(Key::numLock);
    ASSERT_EQ(keyboardState(), "locked 16 ");
    scene.result = typeText(scene.poster, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    EXPECT_EQ(keyboardState(), "locked 16 ");
    scene.keys.tap(Key::numLock);
    scene.expectArrived();
}

TEST(HeldHotkey, chordStillDownAsTypingBegins_staysOut) {
    TypingScene scene;
    const auto connection = X11Server().connect();
    for (const std::uint16_t locks : {0, 2, 16, 18}) {
        xcb_grab_key(connection->get(), 0, connection->root(),
                     static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | locks),
                     static_cast<xcb_keycode_t>(Key::space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    }
    ASSERT_TRUE(connection->roundTrip());
    scene.keys.press(Key::leftControl);
    scene.keys.press(Key::leftAlt);
    scene.keys.press(Key::space);
    scene.result = typeText(scene.poster, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl}) {
        scene.keys.release(key);
    }
    scene.expectArrived();
}

TEST(PasteWithHeldKeys, eachModifier_staysOut) {
    TypingScene scene;
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    QString expected;
    for (const auto key : {Key::leftShift, Key::leftControl, Key::leftAlt, Key::leftSuper, Key::rightAlt}) {
        SCOPED_TRACE(indexOf(key));
        scene.keys.press(key);
        pasteText(scene.poster, pasteboard, sentence);
        expected += sentence;
        EXPECT_TRUE(scene.receiver.waitForText(expected)) << scene.receiver.text().toStdString();
        scene.keys.release(key);
        EXPECT_EQ(keyboardState(), "");
    }
}

TEST(PasteWithHeldKeys, capsLock_staysOn) {
    TypingScene scene;
    X11Pasteboard pasteboard(console, TALVERA_X11_COMPANION, X11Server());
    scene.keys.tap(Key::capsLock);
    pasteText(scene.poster, pasteboard, sentence);
    EXPECT_TRUE(scene.receiver.waitForText(sentence)) << scene.receiver.text().toStdString();
    EXPECT_EQ(keyboardState(), "locked 2 ");
    scene.keys.tap(Key::capsLock);
}
