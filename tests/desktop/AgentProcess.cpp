// SPDX-License-Identifier: MIT
#include "AgentProcess.h"

#include <csignal>
#include <stdexcept>

namespace talvera::test {

namespace {

constexpr int patience = static_cast<int>(std::chrono::milliseconds(AgentProcess::Patience).count());

const QString& tracePrefix() {
    static const QString prefix = "[trace] ";
    return prefix;
}

} // namespace

AgentProcess::AgentProcess(const AgentHome& home, const QString& program) {
    m_process.setProcessEnvironment(home.environment());
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.start(program, QStringList());
    awaitLine("[warmup] primeAll");
}

AgentProcess::~AgentProcess() {
    kill();
}

QString AgentProcess::await(const QString& traced) {
    return awaitLine(tracePrefix() + traced).mid(tracePrefix().size());
}

QString AgentProcess::awaitLine(const QString& start) {
    for (;;) {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(patience))
                fail("waited in vain for: " + start);
        }
        m_lines.append(QString::fromUtf8(m_process.readLine()).chopped(1));
        if (m_lines.last().startsWith(start))
            return m_lines.last();
    }
}

qsizetype AgentProcess::count(const QString& traced) const {
    return m_lines.count(tracePrefix() + traced);
}

int AgentProcess::end() {
    m_process.terminate();
    if (!m_process.waitForFinished(patience))
        fail("it doesn't end");
    if (m_process.exitStatus() != QProcess::NormalExit)
        fail("it has crashed");
    return m_process.exitCode();
}

void AgentProcess::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(patience);
}

void AgentProcess::signal(int number) const {
    ::kill(pid(), number);
}

void AgentProcess::fail(const QString& what) const {
    throw std::runtime_error(("the agent: " + what + "\n  " + m_lines.join("\n  ")).toStdString());
}

} // namespace talvera::test
