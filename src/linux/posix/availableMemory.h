// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

namespace talvera {

/// How many bytes programs can take before others have to make room for them, as the kernel reckons; nothing
/// where it doesn't say. Any thread.
std::optional<qint64> availableMemory();

} // namespace talvera
