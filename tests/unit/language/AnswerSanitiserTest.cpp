// SPDX-License-Identifier: MIT
#include "language/AnswerSanitiser.h"

#include "PrintQt.h"
#include "text/Characters.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <algorithm>
#include <random>

using namespace talvera;

namespace {

/// The parts that come of these snapshots, to the end of the answer.
QStringList partsOf(const QStringList& snapshots) {
    AnswerSanitiser sanitiser;
    QStringList parts;
    const auto keep = [&parts](const QString& part) {
        if (!part.isEmpty())
            parts << part;
    };
    for (const auto& snapshot : snapshots) {
        keep(sanitiser.take(snapshot));
        if (sanitiser.hasEnded())
            break;
    }
    keep(sanitiser.flush());
    return parts;
}

QString textOf(const QStringList& snapshots) {
    return partsOf(snapshots).join(QString());
}

/// Each snapshot one code unit longer than the one before.
QStringList unitByUnit(const QString& answer) {
    QStringList snapshots;
    for (qsizetype length = 1; length <= answer.size(); ++length)
        snapshots << answer.left(length);
    return snapshots;
}

TEST(AnswerSanitiser, shortAnswer_comesInOnePartAtTheEnd) {
    AnswerSanitiser sanitiser;
    EXPECT_EQ(sanitiser.take("Fifteen letters"), "");
    EXPECT_EQ(sanitiser.flush(), "Fifteen letters");
    EXPECT_EQ(sanitiser.flush(), "");
}

TEST(AnswerSanitiser, longAnswer_comesAllButItsLastTwentyCharacters) {
    AnswerSanitiser sanitiser;
    EXPECT_EQ(sanitiser.take("12345678901234567890"), "");
    EXPECT_EQ(sanitiser.take("12345678901234567890a"), "1");
    EXPECT_EQ(sanitiser.take("12345678901234567890abc"), "23");
    EXPECT_EQ(sanitiser.flush(), "45678901234567890abc");
}

TEST(AnswerSanitiser, heldBackCharacters_areThoseThatReadersSee) {
    // Twenty flags and families, each of several code points.
    QString answer = "a";
    for (int i = 0; i < 10; ++i)
        answer += QString::fromUtf8("🇩🇪👩‍👩‍👧");
    EXPECT_EQ(partsOf({answer}).constFirst(), "a");
    EXPECT_EQ(partsOf({answer.mid(1)}).size(), 1);
}

TEST(AnswerSanitiser, openingTag_neverAppears) {
    EXPECT_EQ(partsOf({"<clean>So we meet."}), QStringList({"So we meet."}));
    EXPECT_EQ(textOf(unitByUnit("<clean>So we meet at five, and then we talk.")),
              "So we meet at five, and then we talk.");
}

TEST(AnswerSanitiser, closingMark_endsTheAnswerAtOnce) {
    AnswerSanitiser sanitiser;
    EXPECT_EQ(sanitiser.take("So we meet.</clea"), "");
    EXPECT_FALSE(sanitiser.hasEnded());
    EXPECT_EQ(sanitiser.take("So we meet.</clean> Anything"), "So we meet.");
    EXPECT_TRUE(sanitiser.hasEnded());
    EXPECT_EQ(sanitiser.flush(), "");
}

TEST(AnswerSanitiser, chatMarkers_endTheAnswer) {
    EXPECT_EQ(textOf({"So we meet.<|eot_id|><|start_header_id|>user"}), "So we meet.");
    EXPECT_EQ(textOf(unitByUnit("So we meet.<|start_header_id|>user")), "So we meet.");
}

TEST(AnswerSanitiser, twoMarkersInOneSnapshot_goByTheOrderOfTheList) {
    EXPECT_EQ(textOf({"one<|eot_id|>two</clean>three"}), "one<|eot_id|>two");
}

TEST(AnswerSanitiser, tagInTheMiddle_isRemovedBeforeItCanLeave) {
    EXPECT_EQ(textOf({"So we <raw>meet</raw> at five, and then we talk."}),
              "So we meet at five, and then we talk.");
    EXPECT_EQ(textOf(unitByUnit("So we <raw>meet</raw> at five, and then we talk.")),
              "So we meet at five, and then we talk.");
}

TEST(AnswerSanitiser, tagsInATag_goOneAfterTheOther) {
    EXPECT_EQ(textOf({"So <r<raw>aw>we meet."}), "So we meet.");
}

TEST(AnswerSanitiser, tagInOtherLetters_isText) {
    EXPECT_EQ(textOf({"<RAW>So we meet.</Clean>"}), "<RAW>So we meet.</Clean>");
}

TEST(AnswerSanitiser, shorterSnapshot_addsNothingAndIsWhereItGoesOn) {
    EXPECT_EQ(textOf({"So we meet", "So we", "So we talk"}), "So we meet talk");
}

TEST(AnswerSanitiser, rewrittenSnapshot_addsNothing) {
    EXPECT_EQ(textOf({"So we meet", "And we meet at", "And we meet at five"}), "So we meet five");
}

TEST(AnswerSanitiser, sameSnapshotAgain_addsNothing) {
    EXPECT_EQ(textOf({"So we meet", "So we meet", ""}), "So we meet");
}

TEST(AnswerSanitiser, whiteSpace_passesThrough) {
    EXPECT_EQ(textOf({" \n So we meet.\r\n "}), " \n So we meet.\r\n ");
}

TEST(AnswerSanitiser, snapshotThatEndsWithinACharacter_losesNothing) {
    const auto answer =
        QString::fromUtf8("Cafe\u0301 👩‍👩‍👧 🇩🇪 and more, and more, and more");
    EXPECT_EQ(textOf(unitByUnit(answer)), answer);
}

TEST(AnswerSanitiser, nothingAtAll_isNothing) {
    EXPECT_EQ(partsOf({}), QStringList());
    EXPECT_EQ(partsOf({"", "<raw></raw>"}), QStringList());
}

/// Answers of pieces that look like marks, each cut into snapshots by chance.
class SanitiserByChance : public testing::TestWithParam<unsigned> {
protected:
    static inline const QStringList tags{"<clean>", "</raw>", "<raw>"};
    static inline const QStringList stopMarkers{"</clean>", "<|eot_id|>", "<|start_header_id|>"};

    qsizetype below(qsizetype count) {
        return std::uniform_int_distribution<qsizetype>(0, count - 1)(m_random);
    }
    const QString& pick(const QStringList& list) { return list[below(list.size())]; }

    QString anyAnswer() {
        static const QStringList words{
            "So we meet", " at five", ". ",   "и потом",    "meet<", "</",
            "<|",         "cle",      "raw>", "|>",         ">",     "<r",
            "</cl",       "id|",      "\n",   "Cafe\u0301", "🇩🇪",    "👩‍👩‍👧",
            "お会い",     "eot_",     " ",    "x",          "ean>"};
        const auto marker = pick(stopMarkers); // an answer has one kind at most
        QString answer;
        for (auto pieces = below(14); pieces > 0; --pieces) {
            switch (below(8)) {
            case 0:
            case 1:
                answer += pick(tags);
                break;
            case 2:
                answer += marker;
                break;
            default:
                answer += pick(words);
            }
        }
        return answer;
    }

    QStringList anyCutting(const QString& answer) {
        QStringList snapshots;
        for (qsizetype length = 0; length < answer.size();) {
            length = std::min(answer.size(), length + 1 + below(1 + below(30)));
            snapshots << answer.left(length);
            if (below(10) == 0)
                snapshots << snapshots.constLast(); // one that adds nothing
        }
        return snapshots;
    }

    /// The answer as a reader wants it: without tags, up to its first end.
    static QString meant(QString answer) {
        bool isClean = false;
        while (!isClean) {
            isClean = true;
            for (const auto& tag : tags) {
                isClean = isClean && !answer.contains(tag);
                answer.remove(tag);
            }
        }
        for (const auto& marker : stopMarkers)
            answer = answer.section(marker, 0, 0);
        return answer;
    }

    static bool hasMark(const QString& text) {
        const auto isIn = [&text](const QString& mark) { return text.contains(mark); };
        return std::any_of(tags.begin(), tags.end(), isIn) ||
               std::any_of(stopMarkers.begin(), stopMarkers.end(), isIn);
    }

    std::mt19937 m_random{GetParam()};
};

TEST_P(SanitiserByChance, anyCutting_givesTheSameTextAndLetsNoMarkOut) {
    int cuttings = 0;
    for (int round = 0; round < 400; ++round) {
        const auto answer = anyAnswer();
        const auto text = textOf({answer});
        // Words that happen to be left around a tag make another one, which is no mark of the model's.
        if (text != meant(answer))
            continue;
        ASSERT_FALSE(hasMark(text)) << answer.toStdString();
        for (int cutting = 0; cutting < 10; ++cutting, ++cuttings) {
            const auto snapshots = anyCutting(answer);
            const auto parts = partsOf(snapshots);
            ASSERT_EQ(parts.join(QString()), text) << snapshots.join(u'|').toStdString();
            ASSERT_FALSE(parts.contains(QString()));
        }
    }
    EXPECT_GT(cuttings, 3500); // nearly all answers have counted
}

TEST_P(SanitiserByChance, whatHasComeSoFar_isNeverMoreThanCanStay) {
    for (int round = 0; round < 200; ++round) {
        const auto answer = anyAnswer();
        const auto text = textOf({answer});
        if (text != meant(answer))
            continue;
        AnswerSanitiser sanitiser;
        QString soFar;
        for (const auto& snapshot : anyCutting(answer)) {
            soFar += sanitiser.take(snapshot);
            ASSERT_TRUE(text.startsWith(soFar)) << answer.toStdString();
            if (sanitiser.hasEnded())
                break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SanitiserByChance, testing::Range(1U, 6U));

} // namespace
