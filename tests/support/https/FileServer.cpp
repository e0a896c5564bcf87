// SPDX-License-Identifier: MIT
#include "FileServer.h"

#include <cstdlib>

namespace talvera::test {

FileServer::FileServer(const QMap<QString, QString>& files) {
    QStringList arguments{m_directory.path()};
    for (auto file = files.begin(); file != files.end(); ++file)
        arguments << file.key() + u'=' + file.value();
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(TALVERA_FILE_SERVER), arguments);
    const auto lines = requests();
    if (lines.empty())
        std::abort(); // there is nothing to test against
    m_ports = lines.front();
}

FileServer::~FileServer() {
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

QString FileServer::authority() const {
    return m_directory.path() + QStringLiteral("/ca.pem");
}

int FileServer::port(const QString& name) const {
    return m_ports.at(name.toStdString()).get<int>();
}

QUrl FileServer::url(const QString& path, const QString& portName) const {
    const auto scheme = portName == QStringLiteral("http") ? QStringLiteral("http") : QStringLiteral("https");
    return QUrl(QStringLiteral("%1://localhost:%2/%3").arg(scheme).arg(port(portName)).arg(path));
}

void FileServer::letGo() {
    m_process.write("go\n");
    m_process.waitForBytesWritten();
}

QByteArray FileServer::pattern(qsizetype count) {
    constexpr qsizetype period = 65536;
    QByteArray bytes(count, Qt::Uninitialized);
    for (qsizetype at = 0; at < count; ++at) {
        const auto i = at % period;
        bytes[at] = static_cast<char>((i * 7 + i / 251) % 256);
    }
    return bytes;
}

std::vector<nlohmann::json> FileServer::requests() {
    std::vector<nlohmann::json> lines;
    while (lines.empty() || m_process.canReadLine()) {
        if (!m_process.canReadLine() && !m_process.waitForReadyRead())
            break;
        if (m_process.canReadLine())
            lines.push_back(nlohmann::json::parse(m_process.readLine().toStdString()));
    }
    return lines;
}

} // namespace talvera::test
