// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryIndex.h"
#include "linux/wayland/kwin/KwinGuard.h"
#include "linux/wayland/kwin/KwinScript.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace talvera {

struct KwinWindow {
    QString id; ///< KWin's own
    pid_t pid = 0;
    WindowIdentity identity{};

    bool operator==(const KwinWindow& other) const { return id == other.id && pid == other.pid; }
};

/// What a script of ours in KWin tells of the windows, and another one does. It lives on a thread of its own,
/// so that what has been told can be waited for.
class KwinWindowListener final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "talvera.Windows")

public:
    /// `number` tells it from others of this process.
    KwinWindowListener(QDBusConnection bus, int number);
    ~KwinWindowListener() override;

    /// What the scripts may be called, that are to be unloaded in the end.
    QStringList scripts() const;

    // On the thread of this object:
    void listen();
    void activate(const QString& id);         ///< returns at once, like the next one
    void activateByScript(const QString& id); ///< of version 6 without a search field

    // Any thread.
    std::optional<KwinWindow> active() const;
    std::optional<KwinWindow> lastOf(pid_t pid) const; ///< the one that was active last
    std::vector<pid_t> programs() const;

public Q_SLOTS:
    Q_SCRIPTABLE void Active(const QString& id, const QString& pid, const QString& desktopFile,
                             const QString& windowClass, const QString& name);
    Q_SCRIPTABLE void Window(const QString& id, const QString& pid, const QString& desktopFile,
                             const QString& windowClass, const QString& name);
    Q_SCRIPTABLE void Activated(const QString& id);

private:
    void forget();
    void remember(const KwinWindow& window);

    QDBusConnection m_bus;
    const QString m_path;
    KwinScript m_windows;
    KwinScript m_activation;
    bool m_hasTold = false;
    QString m_activated; ///< by the script

    mutable std::mutex m_mutex; // guards the rest
    std::optional<KwinWindow> m_active;
    std::vector<KwinWindow> m_known; // the one that was active last comes last
};

/// The windows of a Plasma session, those of X programs included.
class KwinWindows {
public:
    /// Returns at once; what KWin tells comes soon.
    explicit KwinWindows(std::shared_ptr<KwinGuard> guard);
    KwinWindows(const KwinWindows&) = delete;
    KwinWindows& operator=(const KwinWindows&) = delete;
    ~KwinWindows();

    // Any thread. What KWin has told last:
    std::optional<KwinWindow> active() const { return m_listener->active(); }
    std::optional<KwinWindow> lastOf(pid_t pid) const { return m_listener->lastOf(pid); }
    std::vector<pid_t> programs() const { return m_listener->programs(); }

    struct Look {
        std::optional<KwinWindow> active;
    };
    /// What is active now. Waits 0.3 seconds at most for KWin: nothing when it doesn't answer by then. Any
    /// thread.
    std::optional<Look> look() const;

    /// Asks for the window to come to the front. Main thread.
    void activate(const KwinWindow& window);

private:
    QDBusConnection m_bus;
    QThread m_thread;
    const std::unique_ptr<KwinWindowListener> m_listener;
    QDBusServiceWatcher m_kwin;
};

} // namespace talvera
