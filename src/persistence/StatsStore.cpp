// SPDX-License-Identifier: MIT
#include "persistence/StatsStore.h"

#include "concurrency/BackgroundPool.h"
#include "concurrency/MainActor.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"
#include "text/TextCounts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace talvera {

namespace {

constexpr auto week = std::chrono::hours(7 * 24);

/// To the nearest whole number, halves away from zero. What no whole number can hold becomes the largest.
std::int64_t rounded(double sum) {
    const double nearest = std::round(sum);
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    return nearest < static_cast<double>(most) ? static_cast<std::int64_t>(nearest) : most;
}

double sumOfAll(SessionDatabase& database) {
    double sum = 0.0;
    database.forEach(std::nullopt,
                     [&sum](const DictationSession& session) { sum += StatsStore::secondsSaved(session); });
    return sum;
}

} // namespace

/// What the background comes back with.
struct StatsStore::Opened {
    std::unique_ptr<SessionDatabase> database;
    QString failure; ///< why there is no database
    std::optional<double> lifetime;
};

StatsStore::StatsStore(Parts parts)
    : m_parts(parts) {
    const auto opened = std::make_shared<Opened>();
    m_parts.background.run([parts, opened] { *opened = openOnDisk(parts); },
                           m_lifetime.ifAlive([this, opened] { adopt(*opened); }));
}

/// Not in the main thread.
StatsStore::Opened StatsStore::openOnDisk(const Parts& parts) {
    const auto directory = parts.directories.applicationSupport + QStringLiteral("/Talvera");
    try {
        parts.files.createDirectories(directory);
    } catch (const PlatformError&) {
        // Opening the store in it will tell.
    }
    Opened opened;
    try {
        opened.database = parts.databases.open(directory + QStringLiteral("/talvera.store"));
    } catch (const PlatformError& error) {
        opened.failure = error.message();
        return opened;
    }
    try {
        opened.lifetime = sumOfAll(*opened.database);
    } catch (const PlatformError&) {
        // The refresh tries again, and says it.
    }
    return opened;
}

void StatsStore::adopt(Opened& opened) {
    m_database = opened.database ? std::move(opened.database) : openInMemory(opened.failure);
    m_savedLifetime = opened.lifetime;
    if (!m_unsaved.empty())
        save();
    refresh();
}

std::unique_ptr<SessionDatabase> StatsStore::openInMemory(const QString& whyNotOnDisk) {
    m_parts.console.log(
        QStringLiteral("StatsStore: on-disk container failed (%1), falling back to in-memory.")
            .arg(whyNotOnDisk));
    try {
        return m_parts.databases.openInMemory();
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("StatsStore: in-memory container also failed (%1). Aborting.")
                                .arg(error.message()));
        qFatal("StatsStore unavailable: disk=%s memory=%s", qUtf8Printable(whyNotOnDisk),
               qUtf8Printable(error.message()));
    }
}

double StatsStore::secondsSaved(const DictationSession& session) {
    // In this order a difference that is not a number counts as none.
    return std::max(0.0, static_cast<double>(session.wordCount) / wpm * 60.0 - session.audioDuration);
}

void StatsStore::record(const QString& text, double audioDuration, const QString& languageCode,
                        bool translateEnabled, bool polishEnabled, const QString& polishBackend) {
    const auto counts = countText(text);
    m_unsaved.push_back({.timestamp = m_parts.actor.date(),
                         .audioDuration = audioDuration,
                         .wordCount = counts.words,
                         .characterCount = counts.characters,
                         .languageCode = languageCode,
                         .translateEnabled = translateEnabled,
                         .polishEnabled = polishEnabled,
                         .polishBackend = polishBackend});
    save();
    refresh();
}

void StatsStore::save() {
    if (!m_database)
        return;
    try {
        m_database->insert(m_unsaved);
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("StatsStore: save failed: %1").arg(error.message()));
        return;
    }
    if (m_savedLifetime) {
        for (const auto& session : m_unsaved)
            *m_savedLifetime += secondsSaved(session);
    }
    m_unsaved.clear();
}

void StatsStore::refresh() {
    refreshLastWeek();
    refreshLifetime();
}

void StatsStore::refreshLastWeek() {
    const auto cutoff = m_parts.actor.date() - week;
    double sum = 0.0;
    std::int64_t count = 0;
    const auto add = [&](const DictationSession& session) {
        sum += secondsSaved(session);
        ++count;
    };
    try {
        if (m_database)
            m_database->forEach(cutoff, add);
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("StatsStore: fetch failed: %1").arg(error.message()));
        return;
    }
    for (const auto& session : m_unsaved) {
        if (session.timestamp > cutoff)
            add(session);
    }
    lastWeekStats.set({rounded(sum), count});
}

/// What is in the database is read once, and again when another agent has added to it; what we add ourselves
/// is summed in the same order.
void StatsStore::refreshLifetime() {
    try {
        if (m_database && m_database->hasGrownElsewhere())
            m_savedLifetime.reset();
        if (m_database && !m_savedLifetime)
            m_savedLifetime = sumOfAll(*m_database);
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("StatsStore: lifetime fetch failed: %1").arg(error.message()));
        return;
    }
    double sum = m_savedLifetime.value_or(0.0);
    for (const auto& session : m_unsaved)
        sum += secondsSaved(session);
    lifetimeSecondsSaved.set(rounded(sum));
}

} // namespace talvera
