// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Console.h"

namespace talvera {

/// Lines on the program's own standard output, each written at once and whole. The session's log is its
/// standard error. A stream without a reader, or whose reader doesn't keep up (Ctrl+S in a
/// terminal), swallows what is written to it: printing never waits.
class StandardConsole final : public Console {
public:
    void print(const QString& line) override;
    void log(const QString& line) override;
};

} // namespace talvera
