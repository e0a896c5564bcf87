// SPDX-License-Identifier: MIT
//
// What becomes of a paste when other programs want the clipboard, or nothing of it.

#include "Program.h"
#include "TypingTools.h"

#include "SimulatedMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "delivery/DeliveryQueue.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

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
        std::vector<FocusNotice> notices;
        DeliveryQueue queue({actor, typing, poster, board},
                            [&](const FocusNotice& notice) { notices.push_back(notice); });
        queue.paste(text, poster.focusedTarget());
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

} // namespace

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
