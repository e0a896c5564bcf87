// SPDX-License-Identifier: MIT
#include "persistence/StatsStore.h"

#include "FakeFileSystem.h"
#include "FakeSessionDatabase.h"
#include "InlineBackgroundPool.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "platform/system/Directories.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>

using namespace talvera;

namespace {

constexpr auto week = std::chrono::seconds(604800);

class StatsStoreTest : public testing::Test {
protected:
    StatsStoreTest() { actor.setStartDate(WallTime(std::chrono::hours(24 * 365 * 50))); }

    StatsStore& store() {
        if (!m_store)
            m_store = std::make_unique<StatsStore>(
                StatsStore::Parts{actor, background, databases, files, directories, console});
        return *m_store;
    }
    /// The program ends and starts again.
    void relaunch() { m_store.reset(); }

    DictationSession session(std::int64_t words, double audioDuration, Duration ago = {}) {
        DictationSession result;
        result.timestamp = actor.date() - ago;
        result.wordCount = words;
        result.audioDuration = audioDuration;
        return result;
    }
    void record(int words, double audioDuration) {
        store().record(QStringLiteral("word ").repeated(words), audioDuration, QStringLiteral("en"), false,
                       false, QStringLiteral("none"));
    }
    WeeklyStats lastWeek() { return store().lastWeekStats.get(); }
    std::int64_t lifetime() { return store().lifetimeSecondsSaved.get(); }

    test::SimulatedMainActor actor;
    test::InlineBackgroundPool background;
    test::FakeSessionDatabases databases;
    Directories directories{"/tmp", "/data", "/home/config", "/opt/talvera"};
    test::FakeFileSystem files{{"/data"}};
    test::RecordingConsole console;

private:
    std::unique_ptr<StatsStore> m_store;
};

using StatsStoreDeathTest = StatsStoreTest;

TEST_F(StatsStoreTest, emptyStore_yieldsNothing) {
    EXPECT_EQ(lastWeek(), (WeeklyStats{0, 0}));
    EXPECT_EQ(lifetime(), 0);
    EXPECT_EQ(databases.openedPath, QStringLiteral("/data/Talvera/talvera.store"));
    EXPECT_TRUE(files.isDirectory("/data/Talvera"));
    EXPECT_TRUE(console.logged().isEmpty());
}

TEST_F(StatsStoreTest, eightyWordsInTenSeconds_save110Seconds) {
    record(80, 10.0);
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(lifetime(), 110);
}

TEST_F(StatsStoreTest, slowSpeech_savesNothingAndStillCounts) {
    record(10, 20.0);
    EXPECT_EQ(lastWeek(), (WeeklyStats{0, 1}));
    EXPECT_EQ(lifetime(), 0);
}

TEST_F(StatsStoreTest, rounding_isOfTheSumAndNotOfEachRecord) {
    databases.onDisk = {session(1, 1.1), session(1, 1.1)};
    EXPECT_EQ(lastWeek(), (WeeklyStats{1, 2}));
    EXPECT_EQ(lifetime(), 1);
}

TEST_F(StatsStoreTest, halfASecond_isRoundedAwayFromZero) {
    databases.onDisk = {session(2, 0.5)};
    EXPECT_EQ(lastWeek().secondsSaved, 3);
    EXPECT_EQ(lifetime(), 3);
}

TEST_F(StatsStoreTest, recordOfExactlyAWeekAgo_isOutsideOfTheWindow) {
    databases.onDisk = {session(80, 10.0, week), session(80, 10.0, week - std::chrono::microseconds(1)),
                        session(80, 10.0, week + std::chrono::hours(1))};
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(lifetime(), 330);
}

TEST_F(StatsStoreTest, openWindow_doesNotAge) {
    record(80, 10.0);
    actor.advance(week);
    EXPECT_EQ(lastWeek().count, 1);
    store().refresh();
    EXPECT_EQ(lastWeek(), (WeeklyStats{0, 0}));
    EXPECT_EQ(lifetime(), 110);
}

TEST_F(StatsStoreTest, record_holdsCountsAndFlagsAndNoText) {
    store().record(QStringLiteral("  zwei  Wörter\n👍🏽 "), 1.5, QStringLiteral("de"), true, false,
                   QStringLiteral("Unavailable"));
    ASSERT_EQ(databases.onDisk.size(), 1U);
    const DictationSession expected{.timestamp = actor.date(),
                                    .audioDuration = 1.5,
                                    .wordCount = 3,
                                    .characterCount = 17,
                                    .languageCode = QStringLiteral("de"),
                                    .translateEnabled = true,
                                    .polishEnabled = false,
                                    .polishBackend = QStringLiteral("Unavailable")};
    EXPECT_EQ(databases.onDisk.front().characterCount, expected.characterCount);
    EXPECT_TRUE(databases.onDisk.front() == expected);
}

TEST_F(StatsStoreTest, relaunch_findsWhatWasRecorded) {
    record(80, 10.0);
    relaunch();
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(lifetime(), 110);
    record(80, 10.0);
    EXPECT_EQ(lifetime(), 220);
}

TEST_F(StatsStoreTest, valuesArePublished_atStartAfterEachRecordAndAtARefresh) {
    int weeks = 0;
    int lifetimes = 0;
    const auto first = store().lastWeekStats.observe([&](const auto&) { ++weeks; });
    const auto second = store().lifetimeSecondsSaved.observe([&](const auto&) { ++lifetimes; });
    record(1, 1.0);
    EXPECT_EQ(weeks, 1);
    EXPECT_EQ(lifetimes, 1);
    actor.advance(std::chrono::hours(1));
    store().refresh();
    EXPECT_EQ(weeks, 2);
    EXPECT_EQ(lifetimes, 2);
}

TEST_F(StatsStoreTest, storeThatCantBeOpened_isReplacedByOneInMemory) {
    databases.openFails = true;
    record(80, 10.0);
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(console.logged(),
              QStringList{
                  QStringLiteral("StatsStore: on-disk container failed (disk), falling back to in-memory.")});
    EXPECT_TRUE(databases.onDisk.empty());
}

TEST_F(StatsStoreTest, directoryThatCantBeMade_isLeftToTheOpening) {
    files.write(QStringLiteral("/data/file"), {});
    directories.applicationSupport = QStringLiteral("/data/file");
    EXPECT_EQ(lifetime(), 0);
    EXPECT_EQ(databases.openedPath, QStringLiteral("/data/file/Talvera/talvera.store"));
}

TEST_F(StatsStoreDeathTest, noMemoryEither_endsTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    databases.openFails = true;
    databases.openInMemoryFails = true;
    EXPECT_DEATH(store(), "StatsStore unavailable: disk=disk memory=memory");
}

TEST_F(StatsStoreTest, recordThatCantBeSaved_countsAndIsSavedWithTheNext) {
    databases.insertFails = true;
    record(80, 10.0);
    EXPECT_EQ(console.logged(), QStringList{QStringLiteral("StatsStore: save failed: full")});
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(lifetime(), 110);

    databases.insertFails = false;
    record(40, 10.0);
    EXPECT_EQ(lastWeek(), (WeeklyStats{160, 2}));
    EXPECT_EQ(lifetime(), 160);
    ASSERT_EQ(databases.onDisk.size(), 2U);
    EXPECT_EQ(databases.onDisk.front().wordCount, 80);

    relaunch();
    EXPECT_EQ(lifetime(), 160);
}

TEST_F(StatsStoreTest, recordOfAnotherAgent_countsFromTheNextRefreshOn) {
    record(80, 10.0);
    databases.onDisk.push_back(session(40, 10.0));
    store().refresh();
    EXPECT_EQ(lastWeek(), (WeeklyStats{160, 2}));
    EXPECT_EQ(lifetime(), 160);
    databases.onDisk.push_back(session(40, 10.0));
    record(40, 10.0);
    EXPECT_EQ(lifetime(), 260);
}

TEST_F(StatsStoreTest, recordOfAnotherAgentThatCantBeRead_countsAsSoonAsItCan) {
    record(80, 10.0);
    databases.onDisk.push_back(session(40, 10.0));
    databases.fetchFails = true;
    store().refresh();
    EXPECT_EQ(lifetime(), 110);
    databases.fetchFails = false;
    store().refresh();
    EXPECT_EQ(lifetime(), 160);
}

TEST_F(StatsStoreTest, unsavedRecord_leavesTheWindowLikeAnyOther) {
    databases.insertFails = true;
    record(80, 10.0);
    actor.advance(week);
    store().refresh();
    EXPECT_EQ(lastWeek(), (WeeklyStats{0, 0}));
    EXPECT_EQ(lifetime(), 110);
}

TEST_F(StatsStoreTest, fetchThatFails_keepsTheLastValues) {
    record(80, 10.0);
    databases.fetchFails = true;
    store().refresh();
    EXPECT_EQ(lastWeek(), (WeeklyStats{110, 1}));
    EXPECT_EQ(lifetime(), 110);
    EXPECT_EQ(console.logged(), QStringList{QStringLiteral("StatsStore: fetch failed: unreadable")});
}

TEST_F(StatsStoreTest, fetchThatFailsAtTheStart_isMadeUpFor) {
    databases.onDisk = {session(80, 10.0)};
    databases.fetchFails = true;
    EXPECT_EQ(lifetime(), 0);
    EXPECT_EQ(console.logged(),
              QStringList({QStringLiteral("StatsStore: fetch failed: unreadable"),
                           QStringLiteral("StatsStore: lifetime fetch failed: unreadable")}));
    databases.fetchFails = false;
    record(80, 10.0);
    EXPECT_EQ(lastWeek(), (WeeklyStats{220, 2}));
    EXPECT_EQ(lifetime(), 220);
}

TEST_F(StatsStoreTest, absurdRecords_endInANumber) {
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    databases.onDisk = {session(1, infinity), session(-5, 1.0),
                        session(1, std::numeric_limits<double>::quiet_NaN())};
    EXPECT_EQ(lastWeek(), (WeeklyStats{0, 3}));
    relaunch();
    databases.onDisk = {session(std::numeric_limits<std::int64_t>::max(), 1.0), session(1, -infinity)};
    EXPECT_EQ(lastWeek(), (WeeklyStats{std::numeric_limits<std::int64_t>::max(), 2}));
}

/// Opening takes as long as the test wants.
class SlowStore : public StatsStoreTest {
protected:
    class HeldPool final : public BackgroundPool {
    public:
        void run(std::function<void()> work, std::function<void()> done) override {
            held = [work = std::move(work), done = std::move(done)] {
                work();
                done();
            };
        }
        std::function<void()> held;
    };

    HeldPool held;
    std::optional<StatsStore> slow{std::in_place,
                                   StatsStore::Parts{actor, held, databases, files, directories, console}};
};

TEST_F(SlowStore, whileItOpens_nothingIsCountedAndNobodyWaits) {
    databases.onDisk = {session(80, 10.0)};
    slow->refresh();
    EXPECT_EQ(slow->lastWeekStats.get(), WeeklyStats());
    held.held();
    EXPECT_EQ(slow->lastWeekStats.get(), (WeeklyStats{110, 1}));
    EXPECT_EQ(slow->lifetimeSecondsSaved.get(), 110);
}

TEST_F(SlowStore, whatIsRecordedMeanwhile_countsAtOnceAndIsSavedOnce) {
    databases.onDisk = {session(80, 10.0)};
    slow->record(QStringLiteral("word ").repeated(40), 10.0, QStringLiteral("en"), false, false,
                 QStringLiteral("none"));
    EXPECT_EQ(slow->lastWeekStats.get(), (WeeklyStats{50, 1}));
    EXPECT_EQ(slow->lifetimeSecondsSaved.get(), 50);
    held.held();
    EXPECT_EQ(databases.onDisk.size(), 2U);
    EXPECT_EQ(slow->lastWeekStats.get(), (WeeklyStats{160, 2}));
    EXPECT_EQ(slow->lifetimeSecondsSaved.get(), 160);
}

TEST_F(SlowStore, cannotBeOpened_whatWasRecordedMeanwhileStillCounts) {
    databases.openFails = true;
    slow->record(QStringLiteral("word ").repeated(40), 10.0, QStringLiteral("en"), false, false,
                 QStringLiteral("none"));
    held.held();
    EXPECT_EQ(slow->lastWeekStats.get(), (WeeklyStats{50, 1}));
    EXPECT_EQ(console.logged().size(), 1);
}

TEST_F(SlowStore, programEndsMeanwhile_isFine) {
    slow.reset();
    held.held();
}

} // namespace
