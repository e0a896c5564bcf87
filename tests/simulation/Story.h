// SPDX-License-Identifier: MIT
#pragma once

#include "TwoColumns.h"

#include <QString>
#include <QStringList>

namespace talvera::simulation {

/// A story as its file tells it (see stories/README.md): what the machine is like, what the user and the
/// machine do when, and what follows.
struct Story {
    QStringList preamble; ///< all lines before the first row, comments and what is given among them
    QStringList given;    ///< what holds from the beginning, in the words of StoryPlayer
    TwoColumns columns;

    /// Throws std::invalid_argument, with the number of the line, when `text` is no story.
    static Story parse(const QString& text);

    /// The whole file, its rows in order and in line.
    QString text() const;
};

} // namespace talvera::simulation
