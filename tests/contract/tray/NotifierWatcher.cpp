// SPDX-License-Identifier: MIT
#include "NotifierWatcher.h"

#include <QDBusConnectionInterface>

#include <stdexcept>

namespace talvera::test {

namespace {

constexpr auto connectionName = "notifier-watcher";
constexpr auto serviceName = "org.kde.StatusNotifierWatcher";

} // namespace

NotifierWatcher::NotifierWatcher(bool hasHost)
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
    , m_hasHost(hasHost) {
    m_names.setConnection(m_bus);
    m_names.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_names, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& service) { m_items.removeAll(service); });
    if (!m_bus.registerObject("/StatusNotifierWatcher", this, QDBusConnection::ExportAllContents) ||
        !m_bus.registerService(serviceName))
        throw std::runtime_error("there is a watcher already");
}

NotifierWatcher::~NotifierWatcher() {
    m_bus.unregisterService(serviceName);
    QDBusConnection::disconnectFromBus(connectionName);
}

void NotifierWatcher::setHasHost(bool hasHost) {
    m_hasHost = hasHost;
    if (hasHost)
        Q_EMIT StatusNotifierHostRegistered();
    else
        Q_EMIT StatusNotifierHostUnregistered();
}

/// The bus knows that the name is watched once it has answered: an end before that would never be told.
void NotifierWatcher::RegisterStatusNotifierItem(const QString& service) {
    m_names.addWatchedService(service);
    if (m_bus.interface()->isServiceRegistered(service))
        m_items.append(service);
}

} // namespace talvera::test
