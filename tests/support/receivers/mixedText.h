// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera::test {

/// About 300 characters of a dozen scripts, with combining accents and emoji of several code points.
QString mixedText();

} // namespace talvera::test
