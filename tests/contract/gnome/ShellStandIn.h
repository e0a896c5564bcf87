// SPDX-License-Identifier: MIT
#pragma once

#include "../desktop/PrivateBus.h"

#include <QProcess>
#include <QString>
#include <QStringList>

namespace talvera::test {

/// A bus of the test's own, with a program on it that stands in for GNOME Shell and our extension of it. At
/// first it has no name there.
class ShellStandIn {
public:
    ShellStandIn();
    ~ShellStandIn();
    ShellStandIn(const ShellStandIn&) = delete;
    ShellStandIn& operator=(const ShellStandIn&) = delete;

    QString address() const { return m_bus.address(); }

    /// One of the things that the program's own words list; it has been done when this returns.
    void does(const QString& line);

    /// What it has been told to do since this was asked last.
    QStringList takeCalls();
    /// Whether it comes to have been told just this since then.
    bool isTold(const QStringList& calls);

private:
    void read();

    PrivateBus m_bus;
    QProcess m_process;
    QStringList m_calls;
    int m_done = 0;
};

} // namespace talvera::test
