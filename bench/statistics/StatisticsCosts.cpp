// SPDX-License-Identifier: MIT
// statistics_costs: what a million recorded dictations cost: at the start of the program, when the panel
// opens, and when one more is recorded. The last week has 2000 of them, which is more than anybody has
// dictated in one.
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/posix/StandardConsole.h"
#include "linux/sqlite/SqliteSessionDatabase.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"
#include "support/Figure.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <string>
#include <vector>

using namespace talvera;
using namespace talvera::bench;

namespace {

constexpr int dictations = 1'000'000;
constexpr int inTheLastWeek = 2000;

constexpr int runs = 21;

double timeOf(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return milliseconds(Clock::now() - start);
}

std::vector<DictationSession> manySessions(WallTime now) {
    std::vector<DictationSession> sessions(dictations);
    for (int i = 0; i < dictations; ++i) {
        auto& session = sessions[static_cast<std::size_t>(i)];
        const auto age = std::chrono::minutes(5) * (dictations - i);
        session.timestamp = now - age - std::chrono::hours(i < dictations - inTheLastWeek ? 24 * 7 : 0);
        session.audioDuration = 1 + i % 30;
        session.wordCount = 3 + i % 60;
        session.characterCount = session.wordCount * 6;
        session.languageCode = i % 5 == 0 ? QStringLiteral("de") : QStringLiteral("en");
        session.polishBackend = QStringLiteral("none");
    }
    return sessions;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QtMainActor actor;
    ThreadBackgroundPool background(actor);
    PosixFileSystem files;
    StandardConsole console;
    SqliteSessionDatabases databases;
    const QTemporaryDir home;
    const Directories directories{home.path(), home.path(), home.path(), home.path()};
    const auto path = home.filePath(QStringLiteral("Talvera/talvera.store"));
    files.createDirectories(home.filePath(QStringLiteral("Talvera")));
    databases.open(path)->insert(manySessions(actor.date()));
    const StatsStore::Parts parts{actor, background, databases, files, directories, console};

    printNote("a store of a million dictations, " + std::to_string(QFileInfo(path).size() / 1'000'000) +
              " MB");

    Figure starting("the start of the statistics holds the main thread");
    Figure counting("until all are counted, in the background");
    std::optional<StatsStore> store;
    for (int run = 0; run < 3; ++run) {
        store.reset();
        counting.add(timeOf([&] {
            starting.add(timeOf([&] { store.emplace(parts); }));
            while (store->lastWeekStats.get().count == 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }));
    }
    starting.print(Aim::below(5));
    counting.print();

    Figure opening("what the panel asks when it opens (" + std::to_string(inTheLastWeek) +
                   " in the last week)");
    Figure recording("recording one more");
    for (int run = 0; run < runs; ++run) {
        opening.add(timeOf([&] { store->refresh(); }));
        recording.add(timeOf([&] {
            store->record(QStringLiteral("one more dictation"), 2.0, QStringLiteral("en"), false, false,
                          QStringLiteral("none"));
        }));
    }
    opening.print(Aim::below(10));
    recording.print(Aim::below(10));
}
