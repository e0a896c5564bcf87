// SPDX-License-Identifier: MIT
#include "concurrency/Lifetime.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

using namespace talvera;

namespace {

struct Owner {
    std::function<void()> countOneMore() {
        return m_lifetime.ifAlive([this] { ++count; });
    }

    int count = 0;
    Lifetime m_lifetime;
};

TEST(Lifetime, callbackOfALivingOwner_runsEachTime) {
    Owner owner;
    const auto callback = owner.countOneMore();
    callback();
    callback();
    EXPECT_EQ(owner.count, 2);
}

TEST(Lifetime, callbackOfADeadOwner_doesNothing) {
    int calls = 0;
    std::optional<Lifetime> lifetime(std::in_place);
    const auto callback = std::function<void()>(lifetime->ifAlive([&calls] { ++calls; }));
    const auto copy = callback;
    lifetime.reset();
    callback();
    copy();
    EXPECT_EQ(calls, 0);
}

TEST(Lifetime, ownerThatDiesInsideItsCallback_isNotTouchedAfterwards) {
    auto owner = std::make_unique<Owner>();
    const auto last = owner->countOneMore();
    const std::function<void()> end = owner->m_lifetime.ifAlive([&owner] { owner.reset(); });
    end();
    last();
    end();
    EXPECT_EQ(owner, nullptr);
}

TEST(Lifetime, arguments_areHandedOn) {
    const Lifetime lifetime;
    std::string heard;
    const std::function<void(const std::string&, int)> callback = lifetime.ifAlive(
        [&heard](const std::string& text, int number) { heard = text + std::to_string(number); });
    callback("seven", 7);
    EXPECT_EQ(heard, "seven7");
}

TEST(Lifetime, argumentsThatOnlyMove_arrive) {
    const Lifetime lifetime;
    std::unique_ptr<int> kept;
    auto callback = lifetime.ifAlive([&kept](std::unique_ptr<int> given) { kept = std::move(given); });
    callback(std::make_unique<int>(7));
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(*kept, 7);
}

TEST(Lifetime, token_tellsTheEnd) {
    std::optional<Lifetime> lifetime(std::in_place);
    const auto token = lifetime->token();
    EXPECT_TRUE(token.isAlive());
    lifetime.reset();
    EXPECT_FALSE(token.isAlive());
}

TEST(Lifetime, twoOwners_haveTwoLives) {
    std::optional<Lifetime> one(std::in_place);
    const Lifetime other;
    const auto token = other.token();
    one.reset();
    EXPECT_TRUE(token.isAlive());
}

} // namespace
