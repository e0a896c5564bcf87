// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera::test {

/// How many words have to be changed, added or taken away to make the one text of the other.
qsizetype wordErrors(const QString& heard, const QString& said);

} // namespace talvera::test
