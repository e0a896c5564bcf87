// SPDX-License-Identifier: MIT
#include "linux/network/HttpTransfer.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QSslConfiguration>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

constexpr qint64 readAhead = 1 << 20; // a slow disk slows the server, and doesn't fill the memory
constexpr qint64 progressPause = 50;  // milliseconds
/// A name server can be late for a network that has just come.
constexpr int attemptsWithNetwork = 3;

/// A server has answered, and only what it says is no success: what came is a file all the same.
bool isAnswer(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::NoError:
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

DownloadFailure failureOf(QNetworkReply::NetworkError error, bool answered) {
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return DownloadFailure::ServerNotFound;
    case QNetworkReply::ConnectionRefusedError:
        return DownloadFailure::ServerAway;
    case QNetworkReply::OperationCanceledError: // after the silence that was too long
    case QNetworkReply::TimeoutError:
        return answered ? DownloadFailure::ServerSilent : DownloadFailure::ServerAway;
    case QNetworkReply::SslHandshakeFailedError:
        return DownloadFailure::NotTrusted;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::UnknownNetworkError:
        return DownloadFailure::ConnectionLost;
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownProxyError:
        return DownloadFailure::ProxyRefused;
    default:
        return DownloadFailure::Other;
    }
}

/// Such a failure may mean that there is no network.
bool mayBeOffline(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::UnknownNetworkError: // the kernel knows no way to there
        return true;
    default:
        return false;
    }
}

} // namespace

HttpTransfer::HttpTransfer(Surroundings surroundings, DownloadRequest request, Report report)
    : m_surroundings(std::move(surroundings))
    , m_request(std::move(request))
    , m_report(std::move(report)) {
    m_whole.setSingleShot(true);
    m_pause.setSingleShot(true);
    connect(&m_whole, &QTimer::timeout, this, [this] {
        end(PlatformError(m_waits ? DownloadFailure::NoNetwork : DownloadFailure::TookTooLong));
    });
    connect(&m_pause, &QTimer::timeout, this, &HttpTransfer::sendFromTheStart);
}

HttpTransfer::~HttpTransfer() {
    drop();
}

void HttpTransfer::begin() {
    try {
        m_file = std::make_unique<UnnamedFile>(m_request.directory);
    } catch (const PlatformError& error) {
        end(error);
        return;
    }
    m_whole.start(m_surroundings.limits.whole);
    sendFromTheStart();
}

void HttpTransfer::send() {
    m_answered = false;
    QNetworkRequest request(m_url);
    request.setSslConfiguration(m_surroundings.tls);
    request.setRawHeader("User-Agent", "Talvera/1.0");
    request.setRawHeader("Accept-Encoding",
                         "identity"); // the bytes as they are, and as many as are announced
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // We follow them: the toolkit would refuse to leave TLS, or with another policy (6.4) ask for the same
    // again at each.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(static_cast<int>(m_surroundings.limits.silence.count()));
    m_reply = m_surroundings.manager.get(request);
    m_reply->setReadBufferSize(readAhead);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpTransfer::takeAnswer);
    connect(m_reply, &QIODevice::readyRead, this, &HttpTransfer::receive);
    connect(m_reply, &QNetworkReply::finished, this, &HttpTransfer::takeEnd);
}

void HttpTransfer::takeAnswer() {
    m_answered = true;
    setWaiting(false);
    const auto target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (target.isValid())
        follow(m_url.resolved(target.toUrl()));
}

/// Wherever it leads: what comes from there is known by its digest.
void HttpTransfer::follow(const QUrl& target) {
    drop();
    const bool isWeb =
        target.scheme() == QStringLiteral("https") || target.scheme() == QStringLiteral("http");
    if (!isWeb) {
        end(PlatformError(DownloadFailure::Other, QStringLiteral("redirected to ") + target.scheme()));
        return;
    }
    if (++m_redirections > m_surroundings.limits.redirections) {
        end(PlatformError(DownloadFailure::RedirectLoop));
        return;
    }
    m_url = target;
    send();
}

void HttpTransfer::receive() {
    const auto announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    const auto bytes = m_reply->readAll();
    if (std::max(announced, m_written + bytes.size()) > m_request.sizeLimit) {
        end(PlatformError(DownloadFailure::TooLarge));
        return;
    }
    try {
        m_file->append(bytes);
    } catch (const PlatformError& error) {
        end(error);
        return;
    }
    m_written += bytes.size();
    if (!m_sinceProgress.isValid() || m_sinceProgress.hasExpired(progressPause))
        tellProgress();
}

void HttpTransfer::takeEnd() {
    const auto error = m_reply->error();
    if (!isAnswer(error)) {
        takeFailure(error);
        return;
    }
    receive();
    if (!m_file) // it didn't fit
        return;
    drop();
    m_whole.stop();
    tellProgress();
    m_report.finished(std::move(m_file));
}

void HttpTransfer::takeFailure(QNetworkReply::NetworkError error) {
    const auto failure = failureOf(error, m_answered);
    const auto text = m_reply->errorString();
    if (!m_answered && mayBeOffline(error))
        waitForNetwork(failure);
    else
        end(PlatformError(failure, text));
}

void HttpTransfer::waitForNetwork(DownloadFailure otherwise) {
    const auto& limits = m_surroundings.limits;
    const auto presence = m_surroundings.presence();
    if (presence == NetworkPresence::There && m_attempts >= attemptsWithNetwork) {
        end(PlatformError(otherwise));
        return;
    }
    drop();
    setWaiting(true);
    const auto doublings = std::min(m_attempts - 1, 10);
    m_pause.start(std::min(limits.firstPause * (1 << doublings), limits.longestPause));
}

void HttpTransfer::networkChanged() {
    if (m_pause.isActive() && m_surroundings.presence() != NetworkPresence::Away)
        sendFromTheStart();
}

void HttpTransfer::sendFromTheStart() {
    m_pause.stop();
    ++m_attempts;
    m_redirections = 0;
    m_url = m_request.url;
    send();
}

void HttpTransfer::setWaiting(bool waits) {
    if (std::exchange(m_waits, waits) != waits)
        m_report.waiting(waits);
}

void HttpTransfer::tellProgress() {
    m_sinceProgress.start();
    m_report.wrote(m_written);
}

void HttpTransfer::end(const PlatformError& error) {
    drop();
    m_whole.stop();
    m_pause.stop();
    m_file.reset();
    m_report.failed(error);
}

/// Lets go of the reply, which may be the one that has just told us something.
void HttpTransfer::drop() {
    if (m_reply == nullptr)
        return;
    auto* const reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

} // namespace talvera
