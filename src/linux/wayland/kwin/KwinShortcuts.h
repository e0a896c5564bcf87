// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/KwinGuard.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>

namespace talvera {

/// Has KWin keep keys from the applications and tell us of them: shortcuts of ours among those that the user
/// sees in the system's settings, for as long as we run. Main thread.
class KwinShortcuts final : public QObject {
    Q_OBJECT

public:
    struct Listener {
        std::function<void(const QString& action)> pressed; ///< also while it is held, again and again
        std::function<void(const QString& action)> released;
        std::function<void(const QString& action, bool isOurs)> changed; ///< by the user, in the settings
        std::function<void()> restarted;                                 ///< KWin has told no ends of presses
    };
    enum class Answer { Registered, Taken, None };

    KwinShortcuts(std::shared_ptr<KwinGuard> guard, Listener listener);
    /// The keys are the applications' again.
    ~KwinShortcuts() override;

    bool isBroken() const { return !m_bus.isConnected(); }

    /// `shortcut` is a key of Qt's with modifiers. Waits half a second at most: None when KWin doesn't answer
    /// by then, and it still may register the shortcut later.
    Answer add(const QString& action, int shortcut);
    void remove(const QString& action);

private Q_SLOTS:
    void hearPress(const QString& component, const QString& action, qlonglong time);
    void hearRelease(const QString& component, const QString& action, qlonglong time);
    void hearChange(const QDBusMessage& message);

private:
    void guard();
    void startOver();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_server;
    const std::shared_ptr<KwinGuard> m_guard;
    const Listener m_listener;
    std::map<QString, int> m_added; ///< by their actions
};

} // namespace talvera
