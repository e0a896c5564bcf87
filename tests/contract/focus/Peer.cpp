// SPDX-License-Identifier: MIT
#include "Peer.h"

#include <csignal>
#include <stdexcept>
#include <thread>

namespace talvera::test {

namespace {

constexpr int patience = 20'000; ///< milliseconds

} // namespace

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

Peer::Peer(const QString& program, const QStringList& arguments) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, arguments);
    if (!m_process.waitForStarted(patience))
        throw std::runtime_error("can't start " + program.toStdString());
}

Peer::~Peer() {
    quit();
}

QString Peer::readLine() {
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patience))
            return {};
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

QString Peer::readUntil(const QString& start) {
    for (auto line = readLine(); !line.isEmpty(); line = readLine()) {
        if (line.startsWith(start))
            return line.mid(start.size()).trimmed();
    }
    return {};
}

void Peer::tell(const QString& command) {
    m_process.write(command.toUtf8() + '\n');
    m_process.waitForBytesWritten(patience);
}

void Peer::signal(int number) const {
    ::kill(pid(), number);
}

void Peer::quit() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    signal(SIGCONT);
    m_process.closeWriteChannel();
    m_process.terminate();
    if (!m_process.waitForFinished(patience)) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
}

} // namespace talvera::test
