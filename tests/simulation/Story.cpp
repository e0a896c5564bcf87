// SPDX-License-Identifier: MIT
#include "Story.h"

#include <optional>
#include <stdexcept>

namespace talvera::simulation {

namespace {

[[noreturn]] void refuse(qsizetype lineNumber, const char* why) {
    throw std::invalid_argument("line " + std::to_string(lineNumber) + ": " + why);
}

/// "0.6    recorderStart"; nothing when the column is empty.
std::optional<TwoColumns::Entry> entryIn(const QString& column, qsizetype lineNumber) {
    const auto text = column.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    const auto space = text.indexOf(u' ');
    bool isTime = false;
    const double at = text.left(space).toDouble(&isTime);
    if (!isTime || at < 0)
        refuse(lineNumber, "a time in seconds goes first");
    if (space < 0)
        refuse(lineNumber, "words are missing behind the time");
    return TwoColumns::Entry{at, text.mid(space).trimmed()};
}

} // namespace

Story Story::parse(const QString& text) {
    const auto givenMark = QStringLiteral("given ");
    Story story;
    bool hasRows = false;
    const auto lines = text.split(u'\n');
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const auto& line = lines[index];
        const auto bar = line.indexOf(u'|');
        const bool isNoRow = line.startsWith(u'#') || line.startsWith(givenMark) || line.trimmed().isEmpty();
        if (isNoRow && hasRows) {
            if (!line.trimmed().isEmpty())
                refuse(index + 1, "comments and what is given go before the first row");
        } else if (isNoRow) {
            story.preamble << line;
            if (line.startsWith(givenMark))
                story.given << line.mid(givenMark.size()).trimmed();
        } else if (bar < 0) {
            refuse(index + 1, "a row has a | between what is done and what follows");
        } else {
            hasRows = true;
            if (auto done = entryIn(line.left(bar), index + 1))
                story.columns.done.push_back(*done);
            if (auto followed = entryIn(line.mid(bar + 1), index + 1))
                story.columns.followed.push_back(*followed);
        }
    }
    if (!hasRows)
        refuse(lines.size(), "a story has at least one row");
    return story;
}

QString Story::text() const {
    return (preamble + columns.rows()).join(u'\n') + u'\n';
}

} // namespace talvera::simulation
