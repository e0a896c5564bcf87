// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>

namespace talvera::test {

/// Stands in for a desktop's watcher of status items, as panels with a tray bring one along: knows the items
/// that have registered and drops those whose name has left the bus.
class NotifierWatcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost CONSTANT)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items CONSTANT)

public:
    explicit NotifierWatcher(bool hasHost = true);
    ~NotifierWatcher() override;

    bool hasHost() const { return m_hasHost; }
    const QStringList& items() const { return m_items; }

    /// A panel joins or leaves.
    void setHasHost(bool hasHost);

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service);

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    QDBusConnection m_bus;
    bool m_hasHost;
    QStringList m_items;
    QDBusServiceWatcher m_names;
};

} // namespace talvera::test
