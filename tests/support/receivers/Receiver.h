// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <sys/types.h>
#include <thread>

namespace talvera::test {

/// A real application with a text field, whose text a test can read back. It lives as long as this object.
class Receiver {
public:
    enum class Kind { Gtk, Gtk4, Qt, Terminal, WaylandTerminal, VteTerminal, Chromium };

    static constexpr std::chrono::seconds patience{30};

    /// Starts the application and returns when its text field has the focus. Its window is titled `title`.
    /// Throws std::runtime_error when that doesn't happen.
    explicit Receiver(Kind kind, const QString& title = QStringLiteral("receiver"));
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    /// What the field holds, as far as the application has told. Any thread.
    QString text() const;

    /// Waits until the field holds exactly `expected`; false if it doesn't in time.
    bool waitForText(const QString& expected, std::chrono::milliseconds limit = patience);
    bool waitFor(const std::function<bool(const QString&)>& condition,
                 std::chrono::milliseconds limit = patience);

    /// Waits until keys are down in the field, or until none is. Of a GTK application.
    bool waitForKeysDown(bool areDown, std::chrono::milliseconds limit = patience);

    /// The process that owns the window.
    pid_t process() const { return m_process; }

    /// Sends a signal to the application with all its helpers, e.g. SIGSTOP.
    void signal(int number) const;

private:
    void launch(Kind kind, const QString& title);
    void awaitFocus(Kind kind, const QString& title);
    void shutDown();
    void listen(int pipe);
    void take(const QByteArray& line);

    std::filesystem::path m_directory;
    pid_t m_process = 0;
    std::thread m_listener;
    int m_stop[2] = {-1, -1};
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ready = false;
    int m_keysDown = 0;
    QString m_text;
};

} // namespace talvera::test
