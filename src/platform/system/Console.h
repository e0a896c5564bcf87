// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// Where the program's few plain lines go. Any thread.
class Console {
public:
    virtual ~Console() = default;

    /// A line on standard output.
    virtual void print(const QString& line) = 0;

    /// A line for the session's log.
    virtual void log(const QString& line) = 0;
};

} // namespace talvera
