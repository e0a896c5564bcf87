// SPDX-License-Identifier: MIT
#include "concurrency/AsyncStream.h"

#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace talvera;
using namespace talvera::test;

namespace {

struct Stream : testing::Test {
    /// Reads to the end, in a task of its own.
    void read() {
        actor.start([this]() -> Task<void> { return readAll(); });
        actor.settle();
    }
    Task<void> readAll() {
        try {
            while (const auto value = co_await stream.next())
                values.push_back(*value);
            ends.emplace_back("end");
        } catch (const std::runtime_error& failure) {
            ends.emplace_back(failure.what());
        }
    }

    SimulatedMainActor actor;
    AsyncStream<int> stream{actor};
    std::vector<int> values;
    std::vector<std::string> ends;
};

TEST_F(Stream, valuesThatCameBefore_areReadInOrder) {
    stream.push(1);
    stream.push(2);
    stream.finish();
    read();
    EXPECT_EQ(values, (std::vector{1, 2}));
    EXPECT_EQ(ends, std::vector<std::string>{"end"});
}

TEST_F(Stream, readerThatWaits_goesOnInATurnOfItsOwn) {
    read();
    stream.push(1);
    stream.push(2);
    EXPECT_TRUE(values.empty());
    actor.settle();
    EXPECT_EQ(values, (std::vector{1, 2}));
    EXPECT_TRUE(ends.empty());
    stream.finish();
    actor.settle();
    EXPECT_EQ(ends, std::vector<std::string>{"end"});
}

TEST_F(Stream, failure_comesBehindTheValues) {
    stream.push(1);
    stream.fail(std::make_exception_ptr(std::runtime_error("broken")));
    read();
    EXPECT_EQ(values, std::vector{1});
    EXPECT_EQ(ends, std::vector<std::string>{"broken"});
}

TEST_F(Stream, failureOfAWaitingReader_isThrownThere) {
    read();
    stream.fail(std::make_exception_ptr(std::runtime_error("broken")));
    actor.settle();
    EXPECT_EQ(ends, std::vector<std::string>{"broken"});
}

TEST_F(Stream, readingBehindTheEnd_givesNothingAgain) {
    stream.fail(std::make_exception_ptr(std::runtime_error("broken")));
    read();
    read();
    EXPECT_EQ(ends, (std::vector<std::string>{"broken", "end"}));
}

} // namespace
