// SPDX-License-Identifier: MIT
#pragma once

#include "Faults.h"
#include "Judge.h"
#include "Play.h"
#include "Story.h"

#include <QString>

#include <optional>
#include <vector>

namespace talvera::simulation {

/// A play before the judge.
class Trial {
public:
    Trial();

    void give(const QString& words) { m_play.give(words); }
    void launch() { m_play.launch(); }
    void perform(const std::vector<TwoColumns::Entry>& things, double end);

    /// Makes everything work again, lets all that is under way come to its end, and judges what is left.
    void rest();
    /// What a story says where it does so.
    static inline const QString restWords = QStringLiteral("everything works again");

    Play& play() { return m_play; }
    const Play& play() const { return m_play; }
    Judge& judge() { return m_judge; }
    const Judge& judge() const { return m_judge; }
    const FaultLog& faults() const { return m_faults; }
    const std::optional<QString>& violation() const { return m_judge.violation(); }

    /// The whole of a story, to its rest: what was wrong, if anything was. Throws std::invalid_argument for
    /// words that mean nothing.
    std::optional<QString> run(const Story& story);

private:
    void doNow(const QString& words);
    void nameRuns();

    FaultLog m_faults;
    Judge m_judge{m_faults};
    Play m_play{m_faults};
};

} // namespace talvera::simulation
