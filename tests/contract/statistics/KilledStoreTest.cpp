// SPDX-License-Identifier: MIT
#include "linux/sqlite/SqliteSessionDatabase.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

#include <signal.h>

using namespace talvera;

namespace {

/// Lets a program of our own write until it has told of `records` more, and kills it at that very moment, in
/// whatever it is doing then. Answers the last record that it called safe, 0 if there was none.
std::int64_t writeAndKill(const QString& path, int records) {
    QProcess writer;
    writer.start(QStringLiteral(TALVERA_SESSION_WRITER), {path});
    int lines = 0;
    QByteArray told;
    while (lines <= records && writer.waitForReadyRead()) {
        told += writer.readAllStandardOutput();
        lines = static_cast<int>(told.count('\n'));
    }
    ::kill(static_cast<pid_t>(writer.processId()), SIGKILL);
    writer.waitForFinished();
    told += writer.readAllStandardOutput();
    EXPECT_EQ(writer.exitStatus(), QProcess::CrashExit) << writer.readAllStandardError().toStdString();
    const auto whole = told.left(told.lastIndexOf('\n')).split('\n');
    return whole.back().toLongLong(); // "open" is no number
}

std::vector<std::int64_t> numbersIn(const QString& path) {
    std::vector<std::int64_t> numbers;
    SqliteSessionDatabases().open(path)->forEach(std::nullopt, [&](const DictationSession& session) {
        EXPECT_EQ(session.timestamp, WallTime(std::chrono::seconds(session.wordCount)));
        numbers.push_back(session.wordCount);
    });
    return numbers;
}

TEST(KilledStore, writerKilledAgainAndAgain_losesNothingThatItCalledSafe) {
    const QTemporaryDir directory;
    const auto path = directory.filePath(QStringLiteral("talvera.store"));
    std::int64_t most = 0;
    for (int round = 0; round < 35; ++round) {
        const auto safe = writeAndKill(path, round % 7);
        const auto numbers = numbersIn(path);
        ASSERT_GE(static_cast<std::int64_t>(numbers.size()), std::max(safe, most));
        for (std::size_t i = 0; i < numbers.size(); ++i)
            ASSERT_EQ(numbers[i], static_cast<std::int64_t>(i) + 1); // whole, in order, and none twice
        most = static_cast<std::int64_t>(numbers.size());
    }
    EXPECT_GE(most, 35);
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files), QStringList{QStringLiteral("talvera.store")});
}

/// A file is made in several steps, and each may be the last one.
TEST(KilledStore, makingOfTheStoreKilledAtAnyTime_leavesOneThatOpens) {
    for (int microseconds = 0; microseconds < 60000; microseconds += 2500) {
        const QTemporaryDir directory;
        const auto path = directory.filePath(QStringLiteral("talvera.store"));
        QProcess writer;
        writer.start(QStringLiteral(TALVERA_SESSION_WRITER), {path});
        ASSERT_TRUE(writer.waitForStarted());
        ::usleep(static_cast<useconds_t>(microseconds)); // any moment is right
        ::kill(static_cast<pid_t>(writer.processId()), SIGKILL);
        writer.waitForFinished();

        EXPECT_NO_THROW(numbersIn(path)) << "after " << microseconds;
        EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files),
                  QStringList{QStringLiteral("talvera.store")});
    }
}

} // namespace
