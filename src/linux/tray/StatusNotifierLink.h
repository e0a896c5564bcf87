// SPDX-License-Identifier: MIT
#pragma once

#include "linux/tray/StatusNotifierItem.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <optional>

namespace talvera {

/// Brings a StatusNotifierItem to the panels of this session: registers it with the session's watcher, and
/// again when the watcher comes back. Asks nothing twice and waits for no answer. Main thread only.
class StatusNotifierLink final : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierLink(StatusNotifierItem& item);
    ~StatusNotifierLink() override;

    /// Whether a panel of this session shows such items; nothing until the session has answered.
    std::optional<bool> hasHost() const { return m_hasHost; }

    /// Called when hasHost() has changed.
    std::function<void()> onHostChanged;

    /// Shows the item wherever there is a host, from now on.
    void setShown(bool shown);

private Q_SLOTS:
    void askForHost();

private:
    void ownerChanged(const QString& owner);
    void setHasHost(bool hasHost);
    void registerItem();
    void withdrawItem();

    StatusNotifierItem& m_item;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QString m_service; ///< our name on the bus while the item is shown
    std::optional<bool> m_hasHost;
    bool m_shown = false;
    bool m_registered = false;
    int m_question = 0; ///< answers to earlier ones are stale
};

} // namespace talvera
