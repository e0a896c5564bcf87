// SPDX-License-Identifier: MIT
#include "linux/dbus/DesktopNotifier.h"

#include "linux/dbus/callLater.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace talvera {

namespace {

constexpr int patienceInMilliseconds = 5'000;
constexpr int serversOwnTime = -1;

} // namespace

void DesktopNotifier::notify(const QString& title, const QString& text,
                             std::function<void(bool shown)> done) {
    const auto service = QStringLiteral("org.freedesktop.Notifications");
    auto message = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                                  service, QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("talvera")}};
    // The text may hold markup, and ours never does.
    message << QStringLiteral("Talvera") << 0U << QStringLiteral("talvera") << title << text.toHtmlEscaped()
            << QStringList() << hints << serversOwnTime;
    callLater(m_bus(), message, patienceInMilliseconds, m_calls,
              [done = std::move(done)](const QDBusMessage& reply) {
                  done(reply.type() == QDBusMessage::ReplyMessage);
              });
}

} // namespace talvera
