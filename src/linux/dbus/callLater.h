// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace talvera {

/// Sends `call` and hands the reply, an error included, to `done` in a later turn, unless `owner` has gone by
/// then. A bus that isn't there replies with an error too, which Qt's own watcher would never tell.
void callLater(const QDBusConnection& bus, const QDBusMessage& call, int timeoutInMilliseconds,
               QObject& owner, std::function<void(const QDBusMessage& reply)> done);

} // namespace talvera
