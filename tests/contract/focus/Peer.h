// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

namespace talvera::test {

/// Asks `condition` until it holds; false when it doesn't within `limit`. For what announces itself to others
/// only.
bool eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds limit = std::chrono::seconds(30));

/// A program that a test works with. It ends with this object.
class Peer {
public:
    Peer(const QString& program, const QStringList& arguments);
    ~Peer();

    pid_t pid() const { return pid_t(m_process.processId()); }

    /// The program's next line; empty when none comes in time.
    QString readLine();
    /// Reads lines until one that starts with `start`; what follows the start, or nothing in time.
    QString readUntil(const QString& start);
    void tell(const QString& command);
    void signal(int number) const;
    /// Ends it and waits until it has ended.
    void quit();

private:
    QProcess m_process;
};

} // namespace talvera::test
