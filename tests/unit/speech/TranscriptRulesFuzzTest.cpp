// SPDX-License-Identifier: MIT
#include "speech/OverlapMerge.h"
#include "speech/TranscriptRules.h"
#include "text/Characters.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

using namespace talvera;

namespace {

/// Texts made of what the rules look for, so that most of them hit several at once.
class TextGenerator {
public:
    explicit TextGenerator(unsigned seed)
        : m_random(seed) {}

    QString text() {
        static const QStringList pieces = {"new",
                                           "line",
                                           "New Line",
                                           "new  paragraph",
                                           "новый",
                                           "абзац",
                                           "новая строка",
                                           "how",
                                           "Что",
                                           "[",
                                           "]",
                                           "[a]",
                                           "[]",
                                           ".",
                                           ",",
                                           "!",
                                           "?",
                                           ":",
                                           ";",
                                           " ",
                                           "  ",
                                           "\t",
                                           "\n",
                                           "\r\n",
                                           "\r",
                                           "\u2028",
                                           "\u0085",
                                           "\u00A0",
                                           "e\u0301",
                                           "\U0001F469\u200D\U0001F680",
                                           "\U0001F1E9\U0001F1EA",
                                           "क्षि",
                                           "漢",
                                           "\u0301",
                                           "$1",
                                           "\\"};
        QString result;
        for (auto left = pick(24); left > 0; --left) {
            const auto choice = pick(static_cast<int>(pieces.size()) + 2);
            if (choice < pieces.size())
                result += pieces[choice];
            else if (choice == pieces.size())
                result += QChar(static_cast<char16_t>(pick(0xFFFF))); // also halves of pairs, and 0
            else
                result += QStringLiteral(" word%1 ").arg(pick(4));
        }
        return result;
    }

private:
    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(m_random); }

    std::mt19937 m_random;
};

constexpr int rounds = 5'000;
constexpr unsigned seed = 20240229;

TEST(TranscriptRulesFuzz, normalize_leavesNothingThatItsRulesForbid) {
    TextGenerator generator(seed);
    for (int i = 0; i < rounds; ++i) {
        const auto text = generator.text();
        const auto result = normalize(text);
        EXPECT_EQ(result, result.trimmed()) << text.toStdString();
        for (const auto* forbidden : {u" .", u" ,", u"\n.", u"..", u",,", u"??", u"  ", u"\n ", u"\n\t"})
            EXPECT_FALSE(result.contains(QString::fromUtf16(forbidden))) << text.toStdString();
        if (HasFailure())
            return;
    }
}

TEST(TranscriptRulesFuzz, fixQuestionMark_isIdempotent) {
    TextGenerator generator(seed + 1);
    for (int i = 0; i < rounds; ++i) {
        const auto once = fixQuestionMark(generator.text());
        ASSERT_EQ(fixQuestionMark(once), once) << once.toStdString();
    }
}

TEST(TranscriptRulesFuzz, postProcess_givesOneTrimmedText) {
    TextGenerator generator(seed + 2);
    for (int i = 0; i < rounds; ++i) {
        const auto text = generator.text();
        const auto result = postProcess(text);
        ASSERT_FALSE(result.contains(u'\r')) << text.toStdString();
        ASSERT_EQ(result, result.trimmed()) << text.toStdString();
    }
}

TEST(TranscriptRulesFuzz, mergeOverlap_keepsTheFirstTextWholeAndAddsNoWord) {
    TextGenerator generator(seed + 3);
    for (int i = 0; i < rounds; ++i) {
        const auto text = generator.text();
        const auto next = generator.text();
        const auto merged = mergeOverlap(text, next);
        ASSERT_TRUE(merged.startsWith(text)) << text.toStdString() << " + " << next.toStdString();
        ASSERT_LE(merged.size(), text.size() + next.size() + 1);
    }
}

TEST(TranscriptRulesFuzz, lastWords_areTheEndOfAllWords) {
    TextGenerator generator(seed + 5);
    for (int i = 0; i < rounds; ++i) {
        const auto text = generator.text();
        const auto all = words(text);
        const qsizetype count = i % 7 + 1;
        ASSERT_EQ(lastWords(text, count), all.mid(std::max<qsizetype>(all.size() - count, 0)))
            << text.toStdString();
    }
}

TEST(TranscriptRulesFuzz, tailPrompt_isTheEndOfTheText) {
    TextGenerator generator(seed + 4);
    for (int i = 0; i < rounds / 20; ++i) {
        QString text;
        for (int j = 0; j < 40; ++j)
            text += generator.text();
        const auto prompt = tailPrompt(text);
        ASSERT_TRUE(prompt && text.contains(*prompt));
    }
}

/// What would cost the square of its length, were the rules written carelessly: 200,000 of each.
class LongRuns : public testing::TestWithParam<const char*> {};

TEST_P(LongRuns, takeNoLongerThanTheirLength) {
    const auto text = QString::fromUtf8(GetParam()).repeated(200'000);
    const auto started = std::chrono::steady_clock::now();
    postProcess(text);
    postProcess(u'a' + text + u'b');
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(20));
}

INSTANTIATE_TEST_SUITE_P(TranscriptRulesFuzz, LongRuns,
                         testing::Values(" ", ".", ". ", "[", "]", "[]", "[a", "new ", "new  ", "\n", " \t",
                                         "\n ", "how ", ".,"));

} // namespace
