// SPDX-License-Identifier: MIT
#include "TwoColumns.h"

#include <algorithm>

namespace talvera::simulation {

namespace {

constexpr int timeWidth = 7;
constexpr qsizetype leastWidth = 28; // of the left column

/// To the microsecond, without needless zeros: 0.6 and 2.
QString timeText(double at) {
    auto text = QString::number(at, 'f', 6);
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

struct Cell {
    QString time;
    double at;
    QString words;

    QString text() const { return time.leftJustified(timeWidth - 1) + u' ' + words; }
};

std::vector<Cell> inOrder(const std::vector<TwoColumns::Entry>& entries) {
    std::vector<Cell> cells;
    cells.reserve(entries.size());
    for (const auto& entry : entries)
        cells.push_back({timeText(entry.at), entry.at, entry.words});
    std::stable_sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) { return a.at < b.at; });
    return cells;
}

} // namespace

QStringList TwoColumns::rows() const {
    const auto left = inOrder(done);
    const auto right = inOrder(followed);
    qsizetype width = leastWidth;
    for (const auto& cell : left)
        width = std::max(width, cell.text().size());

    QStringList lines;
    auto reaction = right.begin();
    const auto add = [&](const QString& action, bool withReaction) {
        auto line = action.leftJustified(width) + QStringLiteral(" |");
        if (withReaction)
            line += u' ' + (reaction++)->text();
        lines << line;
    };
    for (auto action = left.begin(); action != left.end(); ++action) {
        while (reaction != right.end() && reaction->at < action->at && reaction->time != action->time)
            add({}, true);
        // Beside the last thing done at a moment stands the first that followed at it.
        const bool isLast = std::next(action) == left.end() || std::next(action)->time != action->time;
        add(action->text(), isLast && reaction != right.end() && reaction->time == action->time);
    }
    while (reaction != right.end())
        add({}, true);
    return lines;
}

QStringList differences(const QStringList& before, const QStringList& after) {
    // The length of the longest common part of what begins at (i, j).
    const auto rows = static_cast<std::size_t>(before.size());
    const auto columns = static_cast<std::size_t>(after.size());
    std::vector<std::vector<int>> common(rows + 1, std::vector<int>(columns + 1, 0));
    for (auto i = rows; i-- > 0;) {
        for (auto j = columns; j-- > 0;)
            common[i][j] = before[qsizetype(i)] == after[qsizetype(j)]
                               ? common[i + 1][j + 1] + 1
                               : std::max(common[i + 1][j], common[i][j + 1]);
    }

    QStringList lines;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < rows || j < columns) {
        if (i < rows && j < columns && before[qsizetype(i)] == after[qsizetype(j)]) {
            lines << QStringLiteral("  ") + before[qsizetype(i++)];
            ++j;
        } else if (j == columns || (i < rows && common[i + 1][j] >= common[i][j + 1])) {
            lines << QStringLiteral("- ") + before[qsizetype(i++)];
        } else {
            lines << QStringLiteral("+ ") + after[qsizetype(j++)];
        }
    }
    return lines;
}

} // namespace talvera::simulation
