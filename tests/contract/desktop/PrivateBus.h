// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <stdexcept>

namespace talvera::test {

/// A bus of the test's own, on which nothing is started by itself. Everything on it ends with it.
class PrivateBus {
public:
    PrivateBus() {
        QFile config(m_directory.filePath(QStringLiteral("bus.conf")));
        if (!config.open(QIODevice::WriteOnly))
            throw std::runtime_error("no configuration for the bus");
        config.write(
            "<busconfig><type>session</type><listen>unix:dir=" + QFile::encodeName(m_directory.path()) +
            "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/><allow "
            "eavesdrop=\"true\"/>"
            "<allow own=\"*\"/></policy></busconfig>");
        config.close();
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + config.fileName(), QStringLiteral("--nofork"),
                        QStringLiteral("--nosyslog"), QStringLiteral("--print-address=1")});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead()) {
        }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        if (m_address.isEmpty())
            throw std::runtime_error("no bus");
        m_connection = QStringLiteral("private-%1").arg(reinterpret_cast<quintptr>(this));
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        QDBusConnection::disconnectFromBus(m_connection);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    const QString& address() const { return m_address; }
    /// Ours to it.
    QDBusConnection connection() const { return QDBusConnection::connectToBus(m_address, m_connection); }

    /// Starts a service that says "ready" once it is there.
    static void start(QProcess& service, const QString& program, const QStringList& arguments) {
        service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        service.start(program, arguments);
        while (!service.canReadLine() && service.waitForReadyRead()) {
        }
        if (service.readLine() != "ready\n")
            throw std::runtime_error("the service did not start");
    }

private:
    QTemporaryDir m_directory;
    QProcess m_daemon;
    QString m_address;
    QString m_connection;
};

} // namespace talvera::test
