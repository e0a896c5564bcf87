// SPDX-License-Identifier: MIT
#include "linux/language/ThoughtFilter.h"
#include "PrintQt.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

/// What is left of the text when it comes in pieces of `size`. On the way nothing is taken back.
QString filtered(const QString& all, qsizetype size) {
    ThoughtFilter filter;
    for (qsizetype at = 0; at < all.size(); at += size) {
        const auto before = filter.text();
        filter.take(all.mid(at, size));
        EXPECT_TRUE(filter.text().startsWith(before));
        EXPECT_FALSE(filter.text().contains("<think"));
    }
    filter.takeEnd();
    return filter.text();
}

TEST(ThoughtFilter, thoughts_neverComeThroughHoweverTheyAreCut) {
    struct Case {
        const char* all;
        const char* left;
    };
    for (const auto& [all, left] : {
             Case{"So we meet.", "So we meet."},
             Case{"<think>Hm, they say um.</think>So we meet.", "So we meet."},
             Case{"<think>\nHm.\n</think>\n\n  So we meet. ", "So we meet. "},
             Case{"<think></think>So", "So"},
             Case{"So <think>hm</think>we <think>so</think> meet", "So we meet"},
             Case{"<think>never done", ""},
             Case{"<think>a < b </thin k></think>yes", "yes"},
             Case{"a <thin b", "a <thin b"},
             Case{"a <", "a <"},
             Case{"a <think", "a <think"},
             Case{"", ""},
         }) {
        for (qsizetype size = 1; size < 12; ++size)
            EXPECT_EQ(filtered(QString::fromUtf8(all), size), QString::fromUtf8(left)) << all << size;
    }
}

TEST(ThoughtFilter, beginOfAMark_isHeldBackUntilItIsNone) {
    ThoughtFilter filter;
    filter.take("So <th");
    EXPECT_EQ(filter.text(), "So ");
    filter.take("at>");
    EXPECT_EQ(filter.text(), "So <that>");
}

TEST(ThoughtFilter, endOfThoughtsWithoutABegin_isNoticed) {
    for (qsizetype size = 1; size < 12; ++size) {
        ThoughtFilter filter;
        const QString all = "Hm, they say um.</think>So we meet.";
        for (qsizetype at = 0; at < all.size(); at += size)
            filter.take(all.mid(at, size));
        EXPECT_TRUE(filter.hasSpokenThoughts()) << size;
    }
}

} // namespace
