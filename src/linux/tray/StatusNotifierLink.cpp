// SPDX-License-Identifier: MIT
#include "linux/tray/StatusNotifierLink.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace talvera {

namespace {

const auto watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto watcherPath = QStringLiteral("/StatusNotifierWatcher");
const auto itemPath = QStringLiteral("/StatusNotifierItem");
const auto connectionName = QStringLiteral("talvera-status-item");

} // namespace

StatusNotifierLink::StatusNotifierLink(StatusNotifierItem& item)
    : m_item(item)
    , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
    , m_service(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())) {
    if (!m_bus.isConnected()) {
        m_hasHost = false;
        return;
    }
    m_bus.registerObject(itemPath, &m_item,
                         QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals |
                             QDBusConnection::ExportAllSlots);
    for (const auto* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        m_bus.connect(watcherService, watcherPath, watcherService, QString::fromLatin1(signal), this,
                      SLOT(askForHost()));
    m_watcher.setConnection(m_bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_watcher.addWatchedService(watcherService);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
    askForHost();
}

StatusNotifierLink::~StatusNotifierLink() {
    withdrawItem();
    QDBusConnection::disconnectFromBus(connectionName);
}

void StatusNotifierLink::ownerChanged(const QString& owner) {
    m_registered = false; // the new one has not heard of us
    if (owner.isEmpty()) {
        ++m_question;
        setHasHost(false);
    } else {
        askForHost();
    }
}

/// A session without a watcher answers with an error, and so does a watcher that isn't one.
void StatusNotifierLink::askForHost() {
    auto question = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                   QStringLiteral("org.freedesktop.DBus.Properties"),
                                                   QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, number = ++m_question] {
        answer->deleteLater();
        if (number != m_question)
            return;
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        setHasHost(!reply.isError() && reply.value().variant().toBool());
    });
}

void StatusNotifierLink::setHasHost(bool hasHost) {
    const bool changed = m_hasHost != hasHost;
    m_hasHost = hasHost;
    if (m_shown && hasHost)
        registerItem();
    if (changed && onHostChanged)
        onHostChanged();
}

void StatusNotifierLink::setShown(bool shown) {
    m_shown = shown;
    if (!shown)
        withdrawItem();
    else if (m_hasHost == true)
        registerItem();
}

void StatusNotifierLink::registerItem() {
    if (m_registered)
        return;
    m_registered = true;
    m_bus.registerService(m_service);
    auto call = QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService,
                                               QStringLiteral("RegisterStatusNotifierItem"));
    call << m_service;
    m_bus.send(call);
}

/// Watchers drop an item when its name leaves the bus.
void StatusNotifierLink::withdrawItem() {
    if (m_bus.isConnected())
        m_bus.unregisterService(m_service);
    m_registered = false;
}

} // namespace talvera
