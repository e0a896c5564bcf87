// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

class PlatformError;

/// What the user reads of a failure on the model's way to its place.
QString downloadFailureText(const PlatformError& failure);

} // namespace talvera
