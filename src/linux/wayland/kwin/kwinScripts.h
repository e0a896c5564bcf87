// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace talvera {

/// What KWin runs for us, in itself: as little as can be. The names of version 5 and of version 6 are tried
/// in turn.
namespace KwinScripts {

/// Calls Window of the object at the path of this connection for each window that is there, and Active for
/// the one that is active, now and at each change.
QByteArray tellOfWindows(const QString& connection, const QString& path, const QString& interface);

/// Makes the window with this number of KWin's the active one, and calls Activated with it.
QByteArray activateWindow(const QString& connection, const QString& path, const QString& interface,
                          const QString& id);

} // namespace KwinScripts

} // namespace talvera
