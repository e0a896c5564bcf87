// SPDX-License-Identifier: MIT
#include "ShellStandIn.h"

#include "eventually.h"

#include <stdexcept>
#include <utility>

namespace talvera::test {

ShellStandIn::ShellStandIn() {
    PrivateBus::start(m_process, TALVERA_SHELL_STAND_IN, {m_bus.address(), TALVERA_SHELL_INTERFACE});
}

ShellStandIn::~ShellStandIn() {
    m_process.kill();
    m_process.waitForFinished();
}

void ShellStandIn::does(const QString& line) {
    const int before = m_done;
    m_process.write(line.toUtf8() + '\n');
    if (!eventually([&] {
            read();
            return m_done > before;
        }))
        throw std::runtime_error("the stand-in doesn't do: " + line.toStdString());
}

QStringList ShellStandIn::takeCalls() {
    read();
    return std::exchange(m_calls, {});
}

bool ShellStandIn::isTold(const QStringList& calls) {
    const bool isTold = eventually([&] {
        read();
        return m_calls == calls;
    });
    if (isTold)
        m_calls.clear();
    return isTold;
}

void ShellStandIn::read() {
    while (m_process.canReadLine()) {
        const auto line = QString::fromUtf8(m_process.readLine()).trimmed();
        if (line == QStringLiteral("done"))
            ++m_done;
        else
            m_calls << line;
    }
}

} // namespace talvera::test
