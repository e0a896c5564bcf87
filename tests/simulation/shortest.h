// SPDX-License-Identifier: MIT
#pragma once

#include "Story.h"

#include <QString>

namespace talvera::simulation {

/// What is left of a violation's words when times, numbers and texts are taken out: two of a kind agree.
QString kindOf(const QString& violation);

/// A story that still ends in a violation of the same kind as `story` does, and from which nothing can be
/// left out any more. The right column tells what follows.
Story shortest(Story story);

} // namespace talvera::simulation
