// SPDX-License-Identifier: MIT
#include "Mutator.h"
#include "hotkeys/HotkeyBinding.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

using namespace talvera;
using nlohmann::json;

namespace {

const QByteArrayList tokens{"{",
                            "}",
                            "[",
                            "]",
                            ",",
                            ":",
                            "\"",
                            "null",
                            "true",
                            "-1",
                            "65535",
                            "1e3",
                            "4.0",
                            "\\u0063",
                            "\"keyCode\"",
                            "\"_0\"",
                            "\xff",
                            "\"fn\"",
                            "\"chord\"",
                            " ",
                            "0",
                            "65536",
                            "\"modifiers\"",
                            "\"holdSpecial\"",
                            "18446744073709551615",
                            "18446744073709551616",
                            "9223372036854775808",
                            "{\"modifiers\":7}"};

std::optional<HotkeyBinding> decoded(const QByteArray& bytes) {
    try {
        return HotkeyBinding::decoded(bytes);
    } catch (const HotkeyBinding::DecodingError&) {
        return std::nullopt;
    }
}

/// What was decoded is what an independent reader sees there.
void expectSameAs(const json& document, const HotkeyBinding& binding) {
    if (const auto* chord = binding.asChord()) {
        EXPECT_EQ(document.at("chord").at("modifiers"), chord->modifiers);
        EXPECT_EQ(document.at("chord").at("keyCode"), static_cast<std::uint16_t>(chord->keyCode));
    } else {
        EXPECT_EQ(document.at("holdSpecial").at("_0"), rawValue(*binding.asSpecialKey()).toStdString());
    }
}

TEST(HotkeyBindingFuzz, spoiledData_isRefusedOrReadAsItStands) {
    const QByteArrayList good{
        R"({"chord":{"modifiers":786432,"keyCode":49}})", R"({"holdSpecial":{"_0":"rightCommand"}})",
        R"({ "chord" : { "keyCode" : 0 , "modifiers" : 18446744073709551615 , "more" : [ 1 ] } , "x" : {} })"};
    int read = 0;
    for (std::uint32_t seed = 1; seed <= 20'000; ++seed) {
        test::Mutator mutator(seed);
        const auto bytes = mutator.mutated(good[mutator.below(good.size())], tokens, 3);
        const auto binding = decoded(bytes);
        if (!binding)
            continue;
        ++read;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << bytes.toStdString());
        ASSERT_EQ(decoded(binding->encoded()), binding);
        const auto document = json::parse(bytes.begin(), bytes.end(), nullptr, false);
        if (!document.is_discarded()) // two readers need not agree on what is no JSON
            expectSameAs(document, *binding);
        ASSERT_FALSE(testing::Test::HasFailure());
    }
    EXPECT_GT(read, 100); // the spoiling left enough to read
}

TEST(HotkeyBindingFuzz, anyChordInAnySpelling_isReadBack) {
    for (std::uint32_t seed = 1; seed <= 5000; ++seed) {
        test::Mutator random(seed);
        const auto number = [&](int digits) {
            std::uint64_t value = 0;
            for (auto left = 1 + random.below(digits); left > 0; --left)
                value = value * 10 + static_cast<std::uint64_t>(random.below(10));
            return value;
        };
        const auto modifiers = random.below(3) == 0 ? UINT64_MAX - number(6) : number(19);
        const auto keyCode = static_cast<std::uint16_t>(number(5));
        const auto space = QByteArray(random.below(3), ' ');
        const auto first = "\"modifiers\"" + space + ":" + space + QByteArray::number(qulonglong(modifiers));
        const auto second = "\"keyCode\":" + space + QByteArray::number(keyCode);
        const auto fields = random.below(2) ? first + "," + second : second + space + "," + first;
        const auto other = random.below(2) ? R"("x":{"modifiers":18446744073709551615,"keyCode":1},)" : "";
        const auto bytes = "{" + space + other + "\"chord\":{" + fields + space + "}}";
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << bytes.toStdString());
        ASSERT_EQ(decoded(bytes), HotkeyBinding::chord(modifiers, VirtualKey(keyCode)));
    }
}

} // namespace
