// SPDX-License-Identifier: MIT
#include "InlineBackgroundPool.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/sqlite/SqliteSessionDatabase.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

using namespace talvera;

namespace {

class DamagedStore : public testing::Test {
protected:
    DamagedStore() { QDir(m_home.path()).mkpath(QStringLiteral("Talvera")); }

    QString path() const { return m_home.filePath(QStringLiteral("Talvera/talvera.store")); }

    void put(const QByteArray& bytes, const QString& suffix = {}) {
        QFile file(path() + suffix);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray bytesOf(const QString& suffix = {}) {
        QFile file(path() + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList names() const {
        return QDir(m_home.filePath(QStringLiteral("Talvera")))
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries);
    }

    /// Launches the program's statistics, records one dictation and ends.
    void dictateOnce() {
        StatsStore store({actor, background, databases, files, directories, console});
        const auto before = store.lifetimeSecondsSaved.get();
        store.record(QStringLiteral("word ").repeated(80), 10.0, QStringLiteral("en"), false, false,
                     QStringLiteral("none"));
        EXPECT_EQ(store.lifetimeSecondsSaved.get(), before + 110);
    }
    std::int64_t lifetime() {
        return StatsStore({actor, background, databases, files, directories, console})
            .lifetimeSecondsSaved.get();
    }
    void execute(const char* sql) { SqliteFile(QFile::encodeName(path())).execute(sql); }

    test::SimulatedMainActor actor;
    test::InlineBackgroundPool background;
    SqliteSessionDatabases databases;
    PosixFileSystem files;
    test::RecordingConsole console;

private:
    QTemporaryDir m_home;

protected:
    Directories directories{QStringLiteral("/tmp"), m_home.path(), QStringLiteral("/tmp"),
                            QStringLiteral("/tmp")};
};

TEST_F(DamagedStore, noise_isSetAsideWholeAndStatisticsGoOnInMemory) {
    const QByteArray noise("these are not the bytes of a store, and they are many of them");
    put(noise.repeated(200));
    dictateOnce();
    EXPECT_EQ(bytesOf(QStringLiteral(".broken-1")), noise.repeated(200));
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store.broken-1")});
    ASSERT_EQ(console.logged().size(), 1);
    EXPECT_TRUE(
        console.logged().front().startsWith(QStringLiteral("StatsStore: on-disk container failed (")));
    EXPECT_TRUE(console.logged().front().endsWith(QStringLiteral("), falling back to in-memory.")));
}

TEST_F(DamagedStore, launchAfterThat_hasAStoreOnDiskAgain) {
    put("noise");
    dictateOnce();
    dictateOnce();
    EXPECT_EQ(lifetime(), 110);
    EXPECT_EQ(names(),
              QStringList({QStringLiteral("talvera.store"), QStringLiteral("talvera.store.broken-1")}));
}

TEST_F(DamagedStore, second_getsANameOfItsOwn) {
    put("first");
    dictateOnce();
    put("second");
    dictateOnce();
    EXPECT_EQ(bytesOf(QStringLiteral(".broken-1")), "first");
    EXPECT_EQ(bytesOf(QStringLiteral(".broken-2")), "second");
}

TEST_F(DamagedStore, whatLiesBesideIt_goesWithIt) {
    put("noise");
    put("log", QStringLiteral("-wal"));
    dictateOnce();
    EXPECT_EQ(bytesOf(QStringLiteral(".broken-1-wal")), "log");
    EXPECT_EQ(bytesOf(QStringLiteral("-wal")), QByteArray());
}

TEST_F(DamagedStore, emptyFile_becomesAStore) {
    put({});
    dictateOnce();
    EXPECT_EQ(lifetime(), 110);
    EXPECT_TRUE(console.logged().isEmpty());
}

TEST_F(DamagedStore, someoneElsesDatabase_isSetAside) {
    execute("CREATE TABLE Songs (name TEXT)");
    dictateOnce();
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store.broken-1")});
}

TEST_F(DamagedStore, storeOfAnotherVersion_isSetAside) {
    dictateOnce();
    execute("PRAGMA user_version = 20000");
    dictateOnce();
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store.broken-1")});
}

TEST_F(DamagedStore, storeWithoutItsTable_isSetAside) {
    dictateOnce();
    execute("ALTER TABLE DictationSession RENAME TO Elsewhere");
    dictateOnce();
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store.broken-1")});
}

TEST_F(DamagedStore, directoryInItsPlace_isSetAside) {
    QDir().mkpath(path());
    dictateOnce();
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store.broken-1")});
}

TEST_F(DamagedStore, pipeInItsPlace_isSetAsideAndKeepsNobodyWaiting) {
    QDir().mkpath(QFileInfo(path()).path());
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    dictateOnce();
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path() + ".broken-1").constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(DamagedStore, storeThatAnotherProgramHolds_isLeftAlone) {
    dictateOnce();
    {
        SqliteFile other(QFile::encodeName(path()));
        other.execute("BEGIN EXCLUSIVE");
        EXPECT_NO_THROW(dictateOnce()); // which can't be saved, and counts all the same
    }
    EXPECT_EQ(names(), QStringList{QStringLiteral("talvera.store")});
    EXPECT_GE(lifetime(), 110);
}

TEST_F(DamagedStore, directoryThatCantBeMade_costsTheRecordsOfThisRunAlone) {
    directories.applicationSupport = QStringLiteral("/proc/nowhere");
    dictateOnce();
    EXPECT_EQ(lifetime(), 0);
}

TEST_F(DamagedStore, othersMayNotReadIt) {
    dictateOnce();
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

/// Bytes changed anywhere in a store of many pages: it opens or is set aside, and nothing is ever deleted.
TEST_F(DamagedStore, noiseAnywhere_neverEndsTheProgramAndNothingIsDeleted) {
    {
        const auto database = databases.open(path());
        std::vector<DictationSession> many(500);
        for (auto& session : many)
            session.languageCode = QStringLiteral("en");
        database->insert(many);
    }
    const auto whole = bytesOf();
    ASSERT_GT(whole.size(), 10000);
    int setAside = 0;
    for (unsigned seed = 1; seed <= 150; ++seed) {
        auto damaged = whole;
        std::minstd_rand dice(seed);
        const auto place =
            static_cast<qsizetype>(dice() % static_cast<unsigned>(seed % 2 ? 200 : whole.size()));
        for (auto i = place; i < std::min<qsizetype>(place + 1 + seed % 40, damaged.size()); ++i)
            damaged[i] = static_cast<char>(dice());
        if (seed % 10 == 0)
            damaged.truncate(place);
        for (const auto& name : names())
            QFile::remove(path().left(path().lastIndexOf(u'/') + 1) + name);
        put(damaged);
        const auto logged = console.logged().size();
        ASSERT_NO_FATAL_FAILURE(dictateOnce()) << "seed " << seed;
        if (console.logged().size() == logged)
            continue;
        if (names().contains(QStringLiteral("talvera.store.broken-1"))) {
            ++setAside;
            EXPECT_EQ(bytesOf(QStringLiteral(".broken-1")).size(), damaged.size()) << "seed " << seed;
        }
    }
    EXPECT_GT(setAside, 20);
}

} // namespace
