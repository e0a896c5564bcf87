// SPDX-License-Identifier: MIT
#include "linux/network/DownloadThread.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace talvera {

namespace {

/// The proxy of the desktop or of the environment.
class SystemProxy final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        return systemProxyForQuery(query);
    }
};

QSslConfiguration tlsConfiguration(const QString& trustedToo) {
    auto configuration = QSslConfiguration::defaultConfiguration();
    if (!trustedToo.isEmpty())
        configuration.addCaCertificates(trustedToo);
    return configuration;
}

const auto workEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

/// All that lives on the thread. Work comes to it through a queue under a lock of the language's own, and the
/// event does no more than wake: so the thread sanitizer can follow what is handed over.
class DownloadWorker final : public QObject {
public:
    DownloadWorker(const DownloadLimits& limits, QString trustedToo,
                   std::shared_ptr<std::atomic<NetworkPresence>> presence)
        : m_limits(limits)
        , m_trustedToo(std::move(trustedToo))
        , m_presence(std::move(presence)) {}

    ~DownloadWorker() override {
        const std::scoped_lock lock(m_mutex); // what was handed over last may not have been looked at
        m_work.clear();
    }

    /// Has the thread do this, after what was handed to it before. Callable on any thread.
    void hand(std::function<void()> work) {
        const std::scoped_lock lock(m_mutex);
        m_work.push_back(std::move(work));
        if (m_work.size() == 1)
            QCoreApplication::postEvent(this, new QEvent(workEvent));
    }

    void begin(DownloadThread::TransferId id, const DownloadRequest& request,
               const HttpTransfer::Report& report) {
        prepare();
        auto transfer = std::make_unique<HttpTransfer>(
            HttpTransfer::Surroundings{*m_manager, m_tls, m_limits, [this] { return m_presence->load(); }},
            request, report);
        auto& begun = *transfer;
        m_transfers.emplace(id, std::move(transfer));
        begun.begin();
    }

    void cancel(DownloadThread::TransferId id) { m_transfers.erase(id); }

    void networkChanged() {
        for (const auto& [id, transfer] : m_transfers)
            transfer->networkChanged();
    }

    bool event(QEvent* event) override {
        if (event->type() != workEvent)
            return QObject::event(event);
        std::vector<std::function<void()>> batch;
        {
            const std::scoped_lock lock(m_mutex);
            batch.swap(m_work);
        }
        for (const auto& work : batch)
            work();
        return true;
    }

private:
    void prepare() {
        if (m_manager)
            return;
        m_tls = tlsConfiguration(m_trustedToo);
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_manager->setProxyFactory(new SystemProxy); // the manager owns it
    }

    const DownloadLimits m_limits;
    const QString m_trustedToo;
    const std::shared_ptr<std::atomic<NetworkPresence>> m_presence;
    std::mutex m_mutex;
    std::vector<std::function<void()>> m_work; ///< under the lock
    QSslConfiguration m_tls;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::map<DownloadThread::TransferId, std::unique_ptr<HttpTransfer>> m_transfers;
};

DownloadThread::DownloadThread(const DownloadLimits& limits, const QString& trustedToo)
    : m_presence(std::make_shared<std::atomic<NetworkPresence>>(NetworkPresence::Unknown))
    , m_worker(new DownloadWorker(limits, trustedToo, m_presence)) {
    setObjectName(QStringLiteral("download"));
    m_worker->moveToThread(this);
    connect(this, &QThread::finished, m_worker, &QObject::deleteLater);
    start();
}

DownloadThread::~DownloadThread() {
    quit();
    wait();
}

DownloadThread::TransferId DownloadThread::begin(DownloadRequest request, HttpTransfer::Report report) {
    const auto id = m_next++;
    m_worker->hand([worker = m_worker, id, request = std::move(request), report = std::move(report)] {
        worker->begin(id, request, report);
    });
    return id;
}

void DownloadThread::cancel(TransferId transfer) {
    m_worker->hand([worker = m_worker, transfer] { worker->cancel(transfer); });
}

void DownloadThread::setPresence(NetworkPresence presence) {
    m_presence->store(presence);
    m_worker->hand([worker = m_worker] { worker->networkChanged(); });
}

} // namespace talvera
