// SPDX-License-Identifier: MIT
#include "GoldenScript.h"
#include "Mutator.h"
#include "operations.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace talvera;
using namespace talvera::conformance;

namespace {

const QByteArrayList tokens{"{",
                            "}",
                            "[",
                            "]",
                            "\"",
                            ",",
                            ":",
                            "null",
                            "true",
                            "false",
                            "0",
                            "-1",
                            "1e9",
                            "-0.5",
                            "65536",
                            "2147483648",
                            "\"\"",
                            "{}",
                            "[]",
                            "\\u0000",
                            "\\ud83d",
                            "\xff",
                            "\"id\"",
                            "\"value\"",
                            "1e999",
                            "\xf0\x9f\x87\xa9",
                            "18446744073709551616"};

/// Answers must stay one JSON object in one line.
void expectAnswer(const Driver& driver, const QByteArray& request) {
    const auto answer =
        driver.answer(std::string_view(request.constData(), static_cast<size_t>(request.size())));
    ASSERT_EQ(answer.find('\n'), std::string::npos);
    ASSERT_TRUE(nlohmann::json::parse(answer, nullptr, false).is_object()) << answer;
}

TEST(ConformanceDriverFuzz, spoiledRequest_isAnsweredWithAnObject) {
    Driver driver;
    addAllOperations(driver);
    for (const auto& name : goldenScriptNames()) {
        std::uint32_t seed = 1;
        for (const auto& exchange : goldenScript(name)) {
            for (int variant = 0; variant < 60; ++variant, ++seed) {
                SCOPED_TRACE(testing::Message() << name << ", line " << exchange.line << ", seed " << seed);
                test::Mutator mutator(seed);
                expectAnswer(driver, mutator.mutated(QByteArray::fromStdString(exchange.request), tokens));
            }
        }
    }
}

TEST(ConformanceDriverFuzz, noise_isAnsweredWithAnObject) {
    Driver driver;
    addAllOperations(driver);
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Mutator mutator(seed);
        expectAnswer(driver, mutator.noise(mutator.below(200)));
    }
}

TEST(ConformanceDriverFuzz, endlesslyNestedRequest_isABadRequest) {
    const Driver driver;
    for (const auto* opening : {"[", "{\"id\":"}) {
        const auto line = QByteArray(opening).repeated(1'000'000);
        EXPECT_EQ(driver.answer(line.toStdString()), R"({"error":"bad request: nested too deeply"})");
    }
}

TEST(ConformanceDriver, failureOfAnOperation_isTheAnswerAndNotTheEnd) {
    Driver driver;
    driver.add("fail", [](const Request&) -> Answer { throw std::runtime_error("no luck"); });
    std::istringstream requests("{\"op\":\"fail\",\"id\":1}\n{\"op\":\"fail\",\"id\":2}\n");
    std::ostringstream answers;
    driver.run(requests, answers);
    EXPECT_EQ(answers.str(),
              "{\"id\":1,\"error\":\"failed: no luck\"}\n{\"id\":2,\"error\":\"failed: no luck\"}\n");
}

} // namespace
