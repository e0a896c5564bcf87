// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace talvera::simulation {

/// What was done and what followed, side by side in the order of time. Stories are written in this form, and
/// a failure of the simulation is told in it:
///
///     0      press             |
///                              | 0.6    recorderStart
///     2      release           | 2      recorderStop 2.0
class TwoColumns {
public:
    struct Entry {
        double at; ///< virtual seconds
        QString words;
    };

    std::vector<Entry> done;
    std::vector<Entry> followed;

    /// One line for each thing. Of those of one moment the ones that were done come first, the others in the
    /// order in which they were added.
    QStringList rows() const;
};

/// How to get from `before` to `after`: all lines of both, marked with "  " where they agree, with "- " where
/// only `before` has them and with "+ " where only `after` has them.
QStringList differences(const QStringList& before, const QStringList& after);

} // namespace talvera::simulation
