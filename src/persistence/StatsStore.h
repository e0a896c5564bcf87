// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "platform/system/SessionDatabase.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class BackgroundPool;
class Console;
class FileSystem;
class MainActor;
struct Directories;

/// The sum of the last seven days.
struct WeeklyStats {
    std::int64_t secondsSaved = 0;
    std::int64_t count = 0; ///< dictations

    bool operator==(const WeeklyStats&) const = default;
};

/// Remembers how much was dictated, never the words themselves, and tells how much time that has saved over
/// typing. The store is opened and read in the background, since that takes a second when it holds a million
/// dictations; what is recorded meanwhile goes into it when it is open. One that can't be opened is replaced
/// by one in memory; nothing of this ever disturbs a dictation. Main thread only.
class StatsStore {
public:
    struct Parts {
        MainActor& actor;
        BackgroundPool& background;
        SessionDatabases& databases;
        FileSystem& files;
        const Directories& directories;
        Console& console;
    };

    /// Begins to open the store. Ends the process when there isn't even memory for one.
    explicit StatsStore(Parts parts);

    /// Both are current once the store is open, after each record and after refresh(); they don't age in
    /// between.
    Published<WeeklyStats> lastWeekStats;
    Published<std::int64_t> lifetimeSecondsSaved;

    /// Adds one dictation and refreshes. `text` is only counted; `audioDuration` is in seconds.
    void record(const QString& text, double audioDuration, const QString& languageCode, bool translateEnabled,
                bool polishEnabled, const QString& polishBackend);

    /// Computes both values anew.
    void refresh();

    /// The typing speed that speaking is compared with, in words a minute.
    static constexpr double wpm = 40.0;

    /// What one dictation has saved, in seconds: the time that typing would have taken, less the time spent
    /// on speaking, but never less than nothing.
    static double secondsSaved(const DictationSession& session);

private:
    struct Opened;

    static Opened openOnDisk(const Parts& parts);
    void adopt(Opened& opened);
    std::unique_ptr<SessionDatabase> openInMemory(const QString& whyNotOnDisk);
    void save();
    void refreshLastWeek();
    void refreshLifetime();

    Parts m_parts;
    std::unique_ptr<SessionDatabase> m_database; ///< none as long as it is being opened
    std::vector<DictationSession> m_unsaved; ///< what the database has not taken yet; it counts all the same
    std::optional<double> m_savedLifetime;   ///< of what is in the database, once that has been read
    Lifetime m_lifetime;                     ///< what is opened after us is closed again
};

} // namespace talvera
