// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

/// Types the mixed text into a real application under a layout; it has to arrive as it stands, and the layout
/// has to be what it was.
void expectMixedTextArrives(Receiver::Kind kind, const std::string& layout) {
    setLayout(layout);
    Receiver receiver(kind);
    const std::string before = keymap();
    X11KeyEventPoster poster{X11Server()};
    typeText(poster, mixedText());
    EXPECT_TRUE(receiver.waitForText(mixedText())) << receiver.text().toStdString();
    EXPECT_EQ(keymap(), before);
}

} // namespace

#define TALVERA_MATRIX(suite, kind)                                                                          \
    TEST(suite, us_mixedTextArrives) {                                                                       \
        expectMixedTextArrives(kind, "us");                                                                  \
    }                                                                                                        \
    TEST(suite, german_mixedTextArrives) {                                                                   \
        expectMixedTextArrives(kind, "de");                                                                  \
    }                                                                                                        \
    TEST(suite, french_mixedTextArrives) {                                                                   \
        expectMixedTextArrives(kind, "fr");                                                                  \
    }                                                                                                        \
    TEST(suite, russian_mixedTextArrives) {                                                                  \
        expectMixedTextArrives(kind, "ru");                                                                  \
    }                                                                                                        \
    TEST(suite, dvorak_mixedTextArrives) {                                                                   \
        expectMixedTextArrives(kind, "us -variant dvorak");                                                  \
    }

TALVERA_MATRIX(TypingInGtk, Receiver::Kind::Gtk)
TALVERA_MATRIX(TypingInQt, Receiver::Kind::Qt)
TALVERA_MATRIX(TypingInTerminal, Receiver::Kind::Terminal)
TALVERA_MATRIX(TypingInChromium, Receiver::Kind::Chromium)
