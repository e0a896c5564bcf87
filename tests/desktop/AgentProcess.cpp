// SPDX-License-Identifier: MIT
#include "AgentProcess.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace talvera::test {

namespace {

constexpr int patienceInMilliseconds =
    static_cast<int>(std::chrono::milliseconds(AgentProcess::patience).count());

struct Activity {
    char state = 0;         ///< of the main thread, as in /proc/PID/stat
    long long cpuTicks = 0; ///< of all threads

    bool operator==(const Activity&) const = default;
};

Activity activityOf(pid_t process) {
    QFile file("/proc/" + QString::number(process) + "/stat");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const auto line = file.readAll();
    const auto fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13)
        return {};
    return {fields[0].at(0), fields[11].toLongLong() + fields[12].toLongLong()};
}

const QString& tracePrefix() {
    static const QString prefix = "[trace] ";
    return prefix;
}

} // namespace

AgentProcess::AgentProcess(const AgentHome& home, const QString& program) {
    if (!m_log.open())
        throw std::runtime_error("no file for what the agent says of errors");
    m_process.setProcessEnvironment(home.environment());
    m_process.setStandardErrorFile(m_log.fileName());
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.start(program, QStringList());
    awaitLine("[warmup] primeAll");
}

AgentProcess::~AgentProcess() {
    kill();
    handOnLog();
}

void AgentProcess::handOnLog() const {
    const auto all = log();
    std::cerr << all.toStdString();
    for (const auto& line : all.split('\n')) {
        if (line.contains("qrc:/qt/qml") || line.startsWith("QML"))
            ADD_FAILURE() << "a window has complained: " << line.toStdString();
    }
}

QByteArray AgentProcess::log() const {
    QFile file(m_log.fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int AgentProcess::startSecond(const QProcessEnvironment& environment) {
    QProcess second;
    second.setProcessEnvironment(environment);
    second.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    second.start(TALVERA_PROGRAM, QStringList());
    if (!second.waitForFinished(patienceInMilliseconds) || second.exitStatus() != QProcess::NormalExit)
        throw std::runtime_error("a second start doesn't end by itself");
    return second.exitCode();
}

QString AgentProcess::await(const QString& traced) {
    return awaitLine(tracePrefix() + traced).mid(tracePrefix().size());
}

QString AgentProcess::awaitLine(const QString& start) {
    for (;;) {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(patienceInMilliseconds))
                fail("waited in vain for: " + start);
        }
        m_lines.append(QString::fromUtf8(m_process.readLine()).chopped(1));
        if (m_lines.last().startsWith(start))
            return m_lines.last();
    }
}

void AgentProcess::awaitRest() {
    constexpr auto pause = std::chrono::milliseconds(100);
    constexpr int quietPauses = 8;
    Activity before;
    int quiet = 0;
    for (auto left = patience / pause; quiet < quietPauses; --left) {
        if (left == 0)
            fail("it doesn't come to rest");
        std::this_thread::sleep_for(pause);
        const auto now = activityOf(pid());
        quiet = now.state == 'S' && now == before ? quiet + 1 : 0;
        before = now;
    }
}

qsizetype AgentProcess::count(const QString& traced) const {
    return m_lines.count(tracePrefix() + traced);
}

int AgentProcess::end() {
    m_process.terminate();
    return awaitEnd();
}

int AgentProcess::awaitEnd() {
    if (isRunning() && !m_process.waitForFinished(patienceInMilliseconds))
        fail("it doesn't end");
    if (m_process.exitStatus() != QProcess::NormalExit)
        fail("it has crashed");
    return m_process.exitCode();
}

void AgentProcess::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(patienceInMilliseconds);
}

void AgentProcess::signal(int number) const {
    ::kill(pid(), number);
}

void AgentProcess::fail(const QString& what) const {
    throw std::runtime_error(("the agent: " + what + "\n  " + m_lines.join("\n  ")).toStdString());
}

} // namespace talvera::test
