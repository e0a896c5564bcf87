// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace talvera {

/// Replaces the file at `path` by one with these bytes, mode 0600, in one step: whatever happens, a crash and
/// a full disk included, the path holds either the old bytes or the new ones, and when this returns, the new
/// ones are on the disk. A symbolic link stays one, and the file that it leads to is replaced. Uses the name
/// `path`.new meanwhile. Throws PlatformError (domain "FileSystem", code errno). Any thread, one at a time a
/// path.
void replaceFile(const QString& path, const QByteArray& bytes);

/// Moves whatever stands at `path` (a link itself, not what it leads to) to the first free name of
/// `path`.broken-1, -2 ..., and answers that name. Never replaces anything. Throws PlatformError.
QString setAside(const QString& path);

} // namespace talvera
