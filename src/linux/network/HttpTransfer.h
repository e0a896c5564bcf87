// SPDX-License-Identifier: MIT
#pragma once

#include "linux/network/DownloadLimits.h"
#include "linux/network/UnnamedFile.h"
#include "platform/network/FileDownloads.h"

#include <QElapsedTimer>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QSslConfiguration;

namespace talvera {

/// What the desktop knows of the network.
enum class NetworkPresence { Unknown, Away, There };

/// One download over HTTP, from the request to the file on disk. It lives on the thread of its downloads;
/// what it reports is reported there.
class HttpTransfer final : public QObject {
public:
    struct Report {
        std::function<void(qint64 bytesWritten)> wrote;
        std::function<void(bool waits)> waiting;
        std::function<void(std::unique_ptr<UnnamedFile> file)> finished;
        std::function<void(const PlatformError& error)> failed;
    };
    /// What all downloads of a thread share; outlives them.
    struct Surroundings {
        QNetworkAccessManager& manager;
        const QSslConfiguration& tls;
        const DownloadLimits& limits;
        std::function<NetworkPresence()> presence;
    };

    HttpTransfer(Surroundings surroundings, DownloadRequest request, Report report);
    ~HttpTransfer() override;

    void begin();

    /// The network may be there again.
    void networkChanged();

private:
    void sendFromTheStart();
    void send();
    void takeAnswer();
    void follow(const QUrl& target);
    void receive();
    void takeEnd();
    void takeFailure(QNetworkReply::NetworkError error);
    void waitForNetwork(DownloadFailure otherwise);
    void setWaiting(bool waits);
    void tellProgress();
    void end(const PlatformError& error);
    void drop();

    const Surroundings m_surroundings;
    const DownloadRequest m_request;
    const Report m_report;
    std::unique_ptr<UnnamedFile> m_file;
    QNetworkReply* m_reply = nullptr;
    qint64 m_written = 0;
    bool m_answered = false; ///< by a server, whatever it says
    bool m_waits = false;
    int m_attempts = 0;
    QUrl m_url; ///< where the request goes, after the redirections so far
    int m_redirections = 0;
    QTimer m_whole;
    QTimer m_pause;
    QElapsedTimer m_sinceProgress;
};

} // namespace talvera
