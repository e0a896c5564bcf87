// SPDX-License-Identifier: MIT
#pragma once

#include <QCoro/QCoroTask>

namespace talvera {

/// A coroutine of the main actor. It starts at once and runs to its first suspension; a Task that isn't
/// awaited goes on by itself.
template <typename T = void>
using Task = QCoro::Task<T>;

} // namespace talvera
