// SPDX-License-Identifier: MIT
#include "linux/keyboard/KeyEventMailbox.h"

#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace std::chrono_literals;

namespace {

class KeyEventMailboxTest : public testing::Test {
protected:
    std::shared_ptr<KeyEventMailbox> mailbox(Duration bound) {
        return std::make_shared<KeyEventMailbox>(actor, bound, [this](const KeyEvent& event) {
            heard.push_back(event.type);
            if (whileHandling)
                whileHandling();
        });
    }

    static KeyEvent down() { return {.type = KeyEventType::KeyDown, .keyCode = VirtualKey::Space}; }
    static KeyEvent up() { return {.type = KeyEventType::KeyUp, .keyCode = VirtualKey::Space}; }

    using Types = std::vector<KeyEventType>;

    test::SimulatedMainActor actor;
    Types heard;
    std::function<void()> whileHandling;
};

TEST_F(KeyEventMailboxTest, events_arriveInOrderAndInALaterTurn) {
    const auto box = mailbox(1h);
    box->send(down());
    box->send(up());
    EXPECT_TRUE(heard.empty());
    EXPECT_NE(box->deadline(), std::nullopt);
    actor.settle();
    EXPECT_EQ(heard, (Types{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(box->deadline(), std::nullopt);
    EXPECT_FALSE(box->giveUpIfOverdue());
}

TEST_F(KeyEventMailboxTest, unansweredEvents_areForgottenAndTheTimeoutIsToldOnce) {
    const auto box = mailbox(0s);
    box->send(down());
    box->send(up());
    EXPECT_TRUE(box->giveUpIfOverdue());
    EXPECT_FALSE(box->giveUpIfOverdue());
    EXPECT_TRUE(box->hasGivenUp());
    box->send(down());
    actor.settle();
    EXPECT_EQ(heard, Types{KeyEventType::TapDisabledByTimeout});
    EXPECT_FALSE(box->hasGivenUp());
}

TEST_F(KeyEventMailboxTest, eventSentWhileTheTimeoutIsTold_arrives) {
    const auto box = mailbox(0s);
    box->send(down());
    box->giveUpIfOverdue();
    whileHandling = [&] {
        if (heard.back() == KeyEventType::TapDisabledByTimeout)
            box->send(up());
    };
    actor.settle();
    EXPECT_EQ(heard, (Types{KeyEventType::TapDisabledByTimeout, KeyEventType::KeyUp}));
}

TEST_F(KeyEventMailboxTest, eventInHand_countsAsUnansweredUntilItIsHandled) {
    const auto box = mailbox(0s);
    box->send(down());
    box->send(up());
    whileHandling = [&] {
        if (heard.size() == 1) {
            EXPECT_TRUE(box->giveUpIfOverdue());
            EXPECT_EQ(box->heardPresses(), std::set{VirtualKey::Space});
        }
    };
    actor.settle();
    EXPECT_EQ(heard, (Types{KeyEventType::KeyDown, KeyEventType::TapDisabledByTimeout}));
    EXPECT_EQ(box->heardPresses(), std::set{VirtualKey::Space});
}

TEST_F(KeyEventMailboxTest, pressThatWasNeverHandedOver_isNotHeard) {
    const auto box = mailbox(0s);
    box->send(down());
    box->giveUpIfOverdue();
    actor.settle();
    EXPECT_TRUE(box->heardPresses().empty());
}

TEST_F(KeyEventMailboxTest, heardPresses_goByFlagsForModifierKeys) {
    const auto box = mailbox(1h);
    box->send(
        {.type = KeyEventType::FlagsChanged, .keyCode = VirtualKey::RightCommand, .flags = KeyFlag::Command});
    actor.settle();
    EXPECT_EQ(box->heardPresses(), std::set{VirtualKey::RightCommand});
    box->send(
        {.type = KeyEventType::FlagsChanged, .keyCode = VirtualKey::RightCommand, .flags = KeyFlag::Control});
    actor.settle();
    EXPECT_TRUE(box->heardPresses().empty());
}

TEST_F(KeyEventMailboxTest, closedMailbox_callsNobody) {
    auto box = mailbox(1h);
    box->send(down());
    box->close();
    box.reset();
    actor.settle();
    EXPECT_TRUE(heard.empty());
}

} // namespace
