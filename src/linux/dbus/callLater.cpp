// SPDX-License-Identifier: MIT
#include "linux/dbus/callLater.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace talvera {

void callLater(const QDBusConnection& bus, const QDBusMessage& call, int timeoutInMilliseconds,
               QObject& owner, std::function<void(const QDBusMessage& reply)> done) {
    if (!bus.isConnected()) {
        const auto error = QDBusMessage::createError(QDBusError::Disconnected, QStringLiteral("no bus"));
        QMetaObject::invokeMethod(
            &owner, [done = std::move(done), error] { done(error); }, Qt::QueuedConnection);
        return;
    }
    auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call, timeoutInMilliseconds), &owner);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &owner, [answer, done = std::move(done)] {
        answer->deleteLater();
        done(answer->reply());
    });
}

} // namespace talvera
