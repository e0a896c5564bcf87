// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera::test {

/// Programs that are started meanwhile are X programs.
class XProgramsOnly {
public:
    XProgramsOnly();
    ~XProgramsOnly();
    XProgramsOnly(const XProgramsOnly&) = delete;
    XProgramsOnly& operator=(const XProgramsOnly&) = delete;
};

/// What the user has sway do. Throws std::runtime_error when it doesn't.
void tellSway(const QString& command);

enum class Selection { Clipboard, Primary };

/// The text that another program gets from it; empty where it holds none.
QString selection(Selection selection);

} // namespace talvera::test
