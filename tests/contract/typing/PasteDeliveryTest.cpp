// SPDX-License-Identifier: MIT
//
// What becomes of a paste when other programs want the clipboard, or nothing of it, and of a text that a
// keyboard can't write.

#include "Program.h"
#include "TypingTools.h"

#include "SimulatedMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "delivery/DeliveryQueue.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/KeySymTable.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <functional>
#include <future>

using namespace talvera;
using namespace talvera::test;

namespace {

using Kind = FocusNotice::Kind;

const QString text = QStringLiteral("Please send it.");

/// The real clipboard, on a desktop where another program takes it as soon as it is set.
class ContestedPasteboard final : public Pasteboard {
public:
    explicit ContestedPasteboard(Pasteboard& real)
        : m_real(real) {}

    bool setString(const QString& string) override {
        const bool isSet = m_real.setString(string);
        outputOf(
            "for s in clipboard primary; do printf stolen | xclip -selection $s -i >/dev/null 2>&1; done");
        return isSet;
    }
    State state() override { return m_real.state(); }

private:
    Pasteboard& m_real;
};

/// Delivery's own queue, with the real keyboard and the real clipboard behind it.
class PasteDelivery : public ::testing::Test {
protected:
    PasteDelivery() { setLayout("us"); }

    /// Pastes and answers what the user is told.
    std::vector<FocusNotice> paste(Pasteboard& board) {
        return deliver(board, [this](DeliveryQueue& queue) { queue.paste(text, poster.focusedTarget()); });
    }

    std::vector<FocusNotice> type(const QString& typed) {
        return deliver(pasteboard, [this, typed](DeliveryQueue& queue) {
            queue.type(std::make_shared<DeliveryQueue::TypedText>(poster.focusedTarget()), typed);
        });
    }

    std::vector<FocusNotice> deliver(Pasteboard& board, const std::function<void(DeliveryQueue&)>& how) {
        std::vector<FocusNotice> notices;
        DeliveryQueue queue({actor, typing, poster, board},
                            [&](const FocusNotice& notice) { notices.push_back(notice); });
        how(queue);
        std::promise<void> done;
        typing.async([&] { done.set_value(); });
        done.get_future().wait();
        actor.runToRest(talvera::seconds(60));
        return notices;
    }

    SimulatedMainActor actor; ///< calls what is posted to it
    X11KeyEventPoster poster{X11Server()};
    X11Pasteboard pasteboard{console, TALVERA_X11_COMPANION, X11Server()};
    ThreadSerialQueue typing{"typing"};
};

/// A keyboard on which every key writes something, until the layout is set again.
class FullKeyboard {
public:
    FullKeyboard() {
        const auto connection = X11Server().connect();
        const auto keyboard = X11Keyboard::open(*connection);
        const auto first = XKeycode(connection->setup().min_keycode);
        const auto last = XKeycode(connection->setup().max_keycode);
        EXPECT_TRUE(keyboard && changeKeySyms(*keyboard, first, last, [&](KeySymTable& table) {
                        for (std::size_t index = indexOf(first); index <= indexOf(last); ++index) {
                            KeySymEntry& entry = table[XKeycode(index)];
                            if (entry.isEmpty())
                                entry = KeySymEntry::only(XKeysym{XKB_KEY_F35});
                        }
                    }));
    }
    ~FullKeyboard() { setLayout("us"); }
    FullKeyboard(const FullKeyboard&) = delete;
    FullKeyboard& operator=(const FullKeyboard&) = delete;
};

using TypeDelivery = PasteDelivery;

} // namespace

TEST_F(TypeDelivery, keyboardThatCantWriteSomeOfIt_textIsOnTheClipboardAndTheUserIsTold) {
    const FullKeyboard full;
    Receiver receiver(Receiver::Kind::Qt);
    const QString whole = QStringLiteral("A größer text.");
    EXPECT_EQ(type(whole), (std::vector<FocusNotice>{{Kind::ClipboardNotPossible}}));
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("A grer text."))) << receiver.text().toStdString();
    EXPECT_EQ(outputOf("xclip -o -selection clipboard"), whole.toStdString());
}

TEST_F(TypeDelivery, keyboardThatCanWriteAllOfIt_userIsToldNothing) {
    Receiver receiver(Receiver::Kind::Qt);
    const QString whole = QStringLiteral("A größer text.");
    EXPECT_EQ(type(whole), std::vector<FocusNotice>());
    EXPECT_TRUE(receiver.waitForText(whole)) << receiver.text().toStdString();
}

TEST_F(PasteDelivery, clipboardTakenByAnotherProgramBeforeTheChord_isNotPasted) {
    Receiver receiver(Receiver::Kind::Gtk);
    ContestedPasteboard contested(pasteboard);
    EXPECT_EQ(paste(contested), std::vector<FocusNotice>());
    EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
    EXPECT_EQ(outputOf("xclip -o -selection clipboard"), "stolen");
}

TEST_F(PasteDelivery, windowThatTakesTheText_isTold) {
    Receiver receiver(Receiver::Kind::Terminal);
    EXPECT_EQ(paste(pasteboard), std::vector<FocusNotice>());
    EXPECT_TRUE(receiver.waitForText(text)) << receiver.text().toStdString();
}

TEST_F(PasteDelivery, windowThatNeverAsks_leavesTheTextOnTheClipboardAndTheUserIsTold) {
    Program program;
    program.show(Program::Kind::Managed);
    EXPECT_EQ(paste(pasteboard), (std::vector<FocusNotice>{{Kind::ClipboardNotTaken}}));
    EXPECT_FALSE(program.keyPresses().empty()) << "it has got the chord";
    EXPECT_EQ(outputOf("xclip -o -selection clipboard"), text.toStdString());
}
