// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellBus.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include <sys/types.h>

namespace talvera {

/// Which window has the keys in a GNOME session.
struct ShellFocus {
    std::uint64_t window = 0; ///< 0: none, as in the overview
    pid_t process = 0;
    QString application{};
    bool takesText = false; ///< a field there can be written to without keys

    bool operator==(const ShellFocus&) const = default;
};

struct ShellWindow {
    std::uint64_t number = 0;
    pid_t process = 0;
    QString application{};
};

/// What GNOME Shell's extension tells of the windows, as it was told last: no question waits for the Shell,
/// which may hang. Any thread, but made and destroyed on one that outlives it. A thread of its own listens.
class ShellView final : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;

    enum class Presence {
        NoShell,
        Off,         ///< the Shell, with our extension switched off
        UnknownToIt, ///< the Shell, which looks for new extensions only when it starts
        Working,
    };

    /// Returns when it is known who is there. What has the focus is told soon after.
    explicit ShellView(std::shared_ptr<const ShellBus> bus);
    ~ShellView() override;

    Presence presence() const;
    ShellFocus focus() const;
    Clock::time_point focusedSince() const; ///< since when that window has had the focus
    std::vector<ShellWindow> windows() const;

    /// Has the Shell switch our extension on. What comes of it shows later.
    void switchExtensionOn();

Q_SIGNALS:
    /// Told from the view's own thread.
    void extensionCame();
    void extensionWent();
    void focusMoved();

private Q_SLOTS:
    void focusChanged(qulonglong window, int process, const QString& application, bool takesText);

private:
    void listen();
    void askForOwner(const QString& service);
    void askAboutExtension(const QString& method);
    void ownerIs(const QString& service, const QString& owner);
    void askForFocus();
    void askForWindows();
    void setFocus(const ShellFocus& focus);

    const std::shared_ptr<const ShellBus> m_bus;
    bool m_isFocusTold = false;     // since the extension came
    bool m_areWindowsAsked = false; // and not yet told
    bool m_mustAskAgain = false;    // the windows have changed meanwhile
    int m_extension = 0;            // counts them: answers of former ones are stale

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_known;
    int m_ownersKnown = 0;
    bool m_hasShell = false;
    bool m_hasExtension = false;
    bool m_isExtensionUnknown = false; ///< to the Shell, by its own word
    ShellFocus m_focus;
    Clock::time_point m_since{};
    std::vector<ShellWindow> m_windows;

    QThread m_thread;
};

} // namespace talvera
