// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <sys/types.h>

namespace talvera {

/// A directory of this user, no link to one, with none of the `others` permission bits.
bool isOwnDirectory(const QString& path, mode_t others);

/// Makes the directory (0700), or takes one that stands there and is as private as ours would be. One that
/// was open to others for a while is refused: they may have left something in it. False when it can't be had.
bool makePrivateDirectory(const QString& path);

} // namespace talvera
