// SPDX-License-Identifier: MIT
#include "FakeFileSystem.h"
#include "FakeSessionDatabase.h"
#include "InlineBackgroundPool.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "operations.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"

#include <cmath>

namespace talvera::conformance {

namespace {

/// To the nanosecond also where a double holds less of a whole moment.
WallTime momentFrom(const Request& request, const char* field) {
    constexpr double farthest = 9e9;
    const double number = request.number(field);
    if (std::abs(number) > farthest)
        throw BadRequest(std::string("\"") + field + "\" is too far away");
    const double whole = std::floor(number);
    return WallTime(std::chrono::seconds(static_cast<std::int64_t>(whole))) + seconds(number - whole);
}

Answer stats(const Request& request) {
    test::SimulatedMainActor actor;
    actor.setStartDate(momentFrom(request, "now"));
    test::FakeSessionDatabases databases;
    for (const auto& record : request.objects("records")) {
        DictationSession session;
        session.timestamp = momentFrom(record, "timestamp");
        session.wordCount = record.integer<std::int64_t>("wordCount");
        session.audioDuration = record.number("audioDuration");
        databases.onDisk.push_back(session);
    }
    test::FakeFileSystem files;
    test::RecordingConsole console;
    const Directories directories{"/tmp", "/tmp", "/tmp", "/tmp"};
    test::InlineBackgroundPool background;
    const StatsStore store({actor, background, databases, files, directories, console});
    return {{"secondsSaved", store.lastWeekStats.get().secondsSaved},
            {"count", store.lastWeekStats.get().count},
            {"lifetimeSecondsSaved", store.lifetimeSecondsSaved.get()}};
}

} // namespace

void addStatisticsOperations(Driver& driver) {
    driver.add("stats", stats);
}

} // namespace talvera::conformance
