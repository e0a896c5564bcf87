// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include <QMap>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <vector>

namespace talvera::test {

/// The file server of tests, as a process of its own; what it serves is told in its file `file-server`.
class FileServer {
public:
    /// Serves these files under their names, too.
    explicit FileServer(const QMap<QString, QString>& files = {});
    ~FileServer();

    /// The certificate of the authority behind its own.
    QString authority() const;

    /// `path` on that port of the server; which ports there are is told in its file.
    QUrl url(const QString& path, const QString& port = QStringLiteral("https")) const;
    int port(const QString& name) const;

    /// Lets go on what stands still.
    void letGo();

    /// The bytes that it makes up.
    static QByteArray pattern(qsizetype count);

    /// What it was asked for since the last call; waits for the first such line, if there is none yet.
    std::vector<nlohmann::json> requests();

    QProcess& process() { return m_process; }

private:
    QTemporaryDir m_directory;
    QProcess m_process;
    nlohmann::json m_ports;
};

} // namespace talvera::test
