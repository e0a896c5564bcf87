// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Notifier.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace talvera {

/// The notification service on the session bus.
class DesktopNotifier final : public Notifier {
public:
    /// `bus` is called with the first notification.
    explicit DesktopNotifier(std::function<QDBusConnection()> bus = &QDBusConnection::sessionBus)
        : m_bus(std::move(bus)) {}

    void notify(const QString& title, const QString& text, std::function<void(bool shown)> done) override;

private:
    std::function<QDBusConnection()> m_bus;
    QObject m_calls; ///< owns what waits for an answer
};

} // namespace talvera
