// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/BackgroundPool.h"
#include "concurrency/Task.h"

#include <QString>

#include <functional>

namespace talvera {

/// Runs a blocking closure off the main thread and awaits it there; hands on its string or its exception.
Task<QString> onBackground(BackgroundPool& pool, std::function<QString()> work);

} // namespace talvera
