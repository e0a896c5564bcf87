// SPDX-License-Identifier: MIT
#include "FakeSessionDatabase.h"
#include "linux/sqlite/SqliteSessionDatabase.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using namespace talvera;

namespace {

struct Fake {
    test::FakeSessionDatabases databases;
};
struct Sqlite {
    SqliteSessionDatabases databases;
};

template <typename Subject>
class SessionDatabaseContract : public testing::Test {
protected:
    std::unique_ptr<SessionDatabase> open() {
        return m_subject.databases.open(m_directory.filePath(QStringLiteral("talvera.store")));
    }
    std::unique_ptr<SessionDatabase> openInMemory() { return m_subject.databases.openInMemory(); }

    static DictationSession session(std::int64_t number) {
        return {.timestamp = WallTime(std::chrono::seconds(1'700'000'000 + number)),
                .audioDuration = 2.125 * static_cast<double>(number),
                .wordCount = number,
                .characterCount = number * 6,
                .languageCode = number % 2 == 0 ? QStringLiteral("auto") : QStringLiteral("zh-Hant"),
                .translateEnabled = number % 2 == 0,
                .polishEnabled = number % 3 == 0,
                .polishBackend = QStringLiteral("Größe ") + QString::number(number)};
    }

    static std::vector<DictationSession> sessionsOf(SessionDatabase& database,
                                                    std::optional<WallTime> after = std::nullopt) {
        std::vector<DictationSession> found;
        database.forEach(after, [&found](const DictationSession& each) { found.push_back(each); });
        return found;
    }

private:
    Subject m_subject;
    QTemporaryDir m_directory;
};

using Subjects = testing::Types<Fake, Sqlite>;
TYPED_TEST_SUITE(SessionDatabaseContract, Subjects);

TYPED_TEST(SessionDatabaseContract, newOne_isEmpty) {
    EXPECT_TRUE(this->sessionsOf(*this->open()).empty());
    EXPECT_TRUE(this->sessionsOf(*this->openInMemory()).empty());
}

TYPED_TEST(SessionDatabaseContract, whatWasAdded_comesBackWholeAndInOrder) {
    const auto database = this->open();
    database->insert({this->session(3), this->session(1)});
    database->insert({});
    database->insert({this->session(2)});
    const std::vector<DictationSession> expected{this->session(3), this->session(1), this->session(2)};
    EXPECT_TRUE(this->sessionsOf(*database) == expected);
}

TYPED_TEST(SessionDatabaseContract, sessionsOfAnother_areToldOnce) {
    const auto ours = this->open();
    const auto theirs = this->open();
    ours->insert({this->session(1)});
    EXPECT_FALSE(ours->hasGrownElsewhere());
    theirs->insert({this->session(2)});
    EXPECT_TRUE(ours->hasGrownElsewhere());
    EXPECT_FALSE(ours->hasGrownElsewhere());
    EXPECT_EQ(this->sessionsOf(*ours).size(), 2U);
}

TYPED_TEST(SessionDatabaseContract, openedAgain_holdsTheSame) {
    this->open()->insert({this->session(1)});
    this->open()->insert({this->session(2)});
    const std::vector<DictationSession> expected{this->session(1), this->session(2)};
    EXPECT_TRUE(this->sessionsOf(*this->open()) == expected);
}

TYPED_TEST(SessionDatabaseContract, after_takesStrictlyLaterOnesAlone) {
    const auto database = this->open();
    database->insert({this->session(5), this->session(3), this->session(4)});
    const std::vector<DictationSession> expected{this->session(5), this->session(4)};
    EXPECT_TRUE(this->sessionsOf(*database, this->session(3).timestamp) == expected);
    EXPECT_TRUE(this->sessionsOf(*database, this->session(5).timestamp).empty());
}

TYPED_TEST(SessionDatabaseContract, visitThatThrows_leavesTheDatabaseUsable) {
    const auto database = this->open();
    database->insert({this->session(1), this->session(2)});
    EXPECT_THROW(database->forEach(std::nullopt, [](const auto&) { throw std::runtime_error("enough"); }),
                 std::runtime_error);
    database->insert({this->session(3)});
    EXPECT_EQ(this->sessionsOf(*database).size(), 3U);
}

TYPED_TEST(SessionDatabaseContract, inMemory_worksWithoutAFile) {
    const auto database = this->openInMemory();
    database->insert({this->session(1)});
    EXPECT_EQ(this->sessionsOf(*database).size(), 1U);
    EXPECT_TRUE(this->sessionsOf(*this->open()).empty());
}

} // namespace
