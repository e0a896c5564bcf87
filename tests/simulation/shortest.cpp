// SPDX-License-Identifier: MIT
#include "shortest.h"

#include "Trial.h"

#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace talvera::simulation {

namespace {

constexpr int mostTrials = 2000;

/// What is wrong in the story; the words that mean nothing make it one in which nothing is.
QString kindIn(const Story& story) {
    try {
        return kindOf(Trial().run(story).value_or(QString()));
    } catch (const std::invalid_argument&) {
        return {};
    }
}

/// Leaves out of `list` what it can, many neighbours at once first, while `isStillWrong`.
template <typename List, typename Check>
void leaveOut(List& list, int& trials, const Check& isStillWrong) {
    for (auto length = std::max<std::ptrdiff_t>(std::ptrdiff_t(list.size()) / 2, 1); length >= 1;
         length /= 2) {
        for (auto first = std::ptrdiff_t(list.size()); first > 0 && trials > 0;) {
            first = std::max<std::ptrdiff_t>(first - length, 0);
            auto shorter = list;
            const auto last = std::min<std::ptrdiff_t>(first + length, std::ptrdiff_t(list.size()));
            shorter.erase(shorter.begin() + first, shorter.begin() + last);
            --trials;
            if (isStillWrong(shorter))
                list = std::move(shorter);
        }
    }
}

} // namespace

QString kindOf(const QString& violation) {
    static const QRegularExpression particulars(QStringLiteral("^at [0-9.]+ s: |\"[^\"]*\"|: .*$|[0-9.]+"));
    auto kind = violation;
    static const QRegularExpression time(QStringLiteral("^at [0-9.]+ s: "));
    kind.remove(time);
    return kind.remove(particulars);
}

Story shortest(Story story) {
    const auto kind = kindIn(story);
    int trials = mostTrials;
    if (!kind.isEmpty()) {
        leaveOut(story.columns.done, trials, [&](const std::vector<TwoColumns::Entry>& done) {
            auto shorter = story;
            shorter.columns.done = done;
            return kindIn(shorter) == kind;
        });
        leaveOut(story.given, trials, [&](const QStringList& given) {
            auto shorter = story;
            shorter.given = given;
            return kindIn(shorter) == kind;
        });
    }
    Trial trial;
    const auto violation = trial.run(story);
    story.columns.followed = trial.play().followed(false);
    story.preamble =
        QStringList{QStringLiteral("# ") + violation.value_or(QStringLiteral("nothing is wrong")), QString()};
    for (const auto& words : story.given)
        story.preamble << QStringLiteral("given ") + words;
    story.preamble << QString();
    return story;
}

} // namespace talvera::simulation
