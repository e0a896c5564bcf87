// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

namespace talvera {

/// A call to KWin, which isn't started for it.
QDBusMessage callOfKwin(const QString& path, const QString& interface, const QString& method,
                        const QVariantList& arguments);

} // namespace talvera
