// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace talvera {

/// Takes the core's own account of what it does, line by line. It never contains what the user has said.
using Trace = std::function<void(const QString& line)>;

} // namespace talvera
