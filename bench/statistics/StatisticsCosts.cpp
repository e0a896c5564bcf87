// SPDX-License-Identifier: MIT
//
// What a million recorded dictations cost: at the start of the program, when the panel opens, and when one
// more is recorded. The last week has 2000 of them, which is more than anybody has dictated in one.
#include "concurrency/QtMainActor.h"
#include "persistence/StatsStore.h"
#include "platform/Directories.h"
#include "platform/linux/posix/PosixFileSystem.h"
#include "platform/linux/posix/StandardConsole.h"
#include "platform/linux/sqlite/SqliteSessionDatabase.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

using namespace talvera;

namespace {

constexpr int dictations = 1'000'000;
constexpr int inTheLastWeek = 2000;

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The middle one of many runs.
double typical(const std::function<void()>& work) {
    std::vector<double> times;
    for (int run = 0; run < 21; ++run)
        times.push_back(milliseconds(work));
    std::nth_element(times.begin(), times.begin() + 10, times.end());
    return times[10];
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
    PosixFileSystem files;
    StandardConsole console;
    SqliteSessionDatabases databases;
    const QTemporaryDir home;
    const Directories directories{home.path(), home.path(), home.path(), home.path()};
    const auto path = home.filePath(QStringLiteral("Talvera/talvera.store"));
    files.createDirectories(home.filePath(QStringLiteral("Talvera")));
    databases.open(path)->insert(manySessions(actor.date()));

    std::printf("%d dictations, %.1f MB\n", dictations, static_cast<double>(QFileInfo(path).size()) / 1e6);
    std::printf("checking the file at the start:  %8.2f ms\n", milliseconds([&] { databases.open(path); }));
    std::unique_ptr<StatsStore> store;
    std::printf("the whole start:                 %8.2f ms\n", milliseconds([&] {
                    store = std::make_unique<StatsStore>(
                        StatsStore::Platform{actor, databases, files, directories, console});
                }));
    std::printf("opening the panel:               %8.2f ms   (%lld in the last week)\n",
                typical([&] { store->refresh(); }), static_cast<long long>(store->lastWeekStats.get().count));
    std::printf("recording one more:              %8.2f ms\n", typical([&] {
                    store->record(QStringLiteral("one more dictation"), 2.0, QStringLiteral("en"), false,
                                  false, QStringLiteral("none"));
                }));
}
