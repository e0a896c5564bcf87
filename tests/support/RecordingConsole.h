// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Console.h"

#include <QStringList>

#include <mutex>

namespace talvera::test {

/// Keeps what was printed. Any thread.
class RecordingConsole final : public Console {
public:
    void print(const QString& line) override {
        const std::scoped_lock lock(m_mutex);
        m_printed.append(line);
    }
    void log(const QString& line) override {
        const std::scoped_lock lock(m_mutex);
        m_logged.append(line);
    }

    QStringList printed() const {
        const std::scoped_lock lock(m_mutex);
        return m_printed;
    }
    QStringList logged() const {
        const std::scoped_lock lock(m_mutex);
        return m_logged;
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_printed;
    QStringList m_logged;
};

} // namespace talvera::test
