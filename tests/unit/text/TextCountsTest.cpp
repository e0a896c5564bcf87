// SPDX-License-Identifier: MIT
#include "text/TextCounts.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

struct Counted {
    const char* text;
    std::int64_t words;
    std::int64_t characters;
};

TEST(TextCounts, countText_countsWordsBetweenWhiteSpaceAndCharactersAsReadersSeeThem) {
    const std::vector<Counted> cases{
        {"", 0, 0},
        {" \n\t ", 0, 4},
        {"hello", 1, 5},
        {"hello  world", 2, 12},
        {" padded \n", 1, 9},
        {"one\ntwo\r\nthree", 3, 13}, // the two line-break characters are seen as one
        {"don't stop-go", 2, 13},
        {"no\u00a0break\u3000wide\u2028line", 4, 18},
        {"e\u0301te\u0301", 1, 3},
        {"🇩🇪👩‍👩‍👧 👍🏽", 2, 4},
        {"日本語", 1, 3},
    };
    for (const auto& each : cases)
        EXPECT_EQ(countText(QString::fromUtf8(each.text)), (TextCounts{each.words, each.characters}))
            << each.text;
}

} // namespace
