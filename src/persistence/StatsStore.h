// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The record of what was dictated: counts, never the words themselves. Main thread only; nothing here fails.
class StatsStore {
public:
    virtual ~StatsStore() = default;

    /// Adds one dictation. `text` is only counted; `audioDuration` is in seconds.
    virtual void record(const QString& text, double audioDuration, const QString& languageCode,
                        bool translateEnabled, bool polishEnabled, const QString& polishBackend) = 0;
};

/// Keeps nothing.
class NoStatsStore final : public StatsStore {
public:
    void record(const QString&, double, const QString&, bool, bool, const QString&) override {}
};

} // namespace talvera
