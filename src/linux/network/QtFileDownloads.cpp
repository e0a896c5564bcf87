// SPDX-License-Identifier: MIT
#include "linux/network/QtFileDownloads.h"

#include "concurrency/MainActor.h"
#include "linux/network/DownloadThread.h"

#include <QNetworkInformation>

#include <utility>

namespace talvera {

namespace {

/// A file that is on its way from the transfers' thread to the main thread, and on.
class NamedOnDelivery final : public DeliveredFile {
public:
    explicit NamedOnDelivery(std::unique_ptr<UnnamedFile> file)
        : m_file(std::move(file)) {}
    void moveTo(const QString& path) override { m_file->moveTo(path); }

private:
    std::unique_ptr<UnnamedFile> m_file;
};

/// A thread that has nothing more to do may still wait for a name server: it ends by itself then.
void letEnd(DownloadThread* thread) {
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->quit();
}

} // namespace

/// What the main thread knows of a transfer. It keeps the thread until the transfer has ended.
class QtFileDownloads::Transfer {
public:
    Transfer(std::shared_ptr<DownloadThread> thread, DownloadEvents events)
        : m_thread(std::move(thread))
        , m_events(std::move(events)) {}

    void begin(const DownloadRequest& request, HttpTransfer::Report report) {
        m_id = m_thread->begin(request, std::move(report));
    }
    void cancel() {
        if (!m_thread)
            return;
        m_thread->cancel(m_id);
        m_thread.reset();
    }
    /// Tells of something, unless it has been cancelled.
    void tell(const std::function<void(const DownloadEvents&)>& event) {
        if (m_thread)
            event(m_events);
    }
    /// The same for the last that there is to tell.
    void tellEnd(const std::function<void(const DownloadEvents&)>& event) {
        if (!m_thread)
            return;
        cancel();
        event(m_events);
    }

private:
    std::shared_ptr<DownloadThread> m_thread;
    const DownloadEvents m_events;
    DownloadThread::TransferId m_id = 0;
};

class QtFileDownloads::Task final : public DownloadTask {
public:
    explicit Task(std::shared_ptr<Transfer> transfer)
        : m_transfer(std::move(transfer)) {}
    ~Task() override { m_transfer->cancel(); }
    void cancel() override { m_transfer->cancel(); }

private:
    std::shared_ptr<Transfer> m_transfer;
};

QtFileDownloads::QtFileDownloads(MainActor& actor)
    : QtFileDownloads(actor, Options{}) {}

QtFileDownloads::QtFileDownloads(MainActor& actor, Options options)
    : m_actor(actor)
    , m_options(std::move(options)) {}

QtFileDownloads::~QtFileDownloads() = default;

std::shared_ptr<DownloadThread> QtFileDownloads::thread() {
    auto running = m_thread.lock();
    if (!running) {
        auto* const fresh = new DownloadThread(m_options.limits, m_options.trustedToo);
        fresh->setParent(this); // so that none outlives us
        running = std::shared_ptr<DownloadThread>(fresh, letEnd);
        m_thread = running;
        if (m_followsNetwork)
            tellPresence();
    }
    return running;
}

std::unique_ptr<DownloadTask> QtFileDownloads::download(const DownloadRequest& request,
                                                        DownloadEvents events) {
    auto transfer = std::make_shared<Transfer>(thread(), std::move(events));
    const std::weak_ptr<Transfer> weak = transfer;
    const auto onMain = [&actor = m_actor, weak](auto work) {
        actor.post([weak, work = std::move(work)] {
            if (const auto alive = weak.lock())
                work(*alive);
        });
    };
    HttpTransfer::Report report;
    report.wrote = [onMain](qint64 bytes) {
        onMain([bytes](Transfer& own) { own.tell([bytes](const auto& to) { to.wrote(bytes); }); });
    };
    report.waiting = [onMain, this](bool waits) {
        onMain([waits, this](Transfer& own) {
            own.tell([waits, this](const auto& to) {
                followNetwork();
                to.waiting(waits);
            });
        });
    };
    report.finished = [onMain](std::unique_ptr<UnnamedFile> file) {
        auto delivered = std::make_shared<NamedOnDelivery>(std::move(file));
        // Moved, so that this thread holds no share of it, which would keep the file in use for a while.
        onMain([delivered = std::move(delivered)](Transfer& own) {
            own.tellEnd([&delivered](const auto& to) { to.finished(delivered); });
        });
    };
    report.failed = [onMain](const PlatformError& error) {
        onMain([error](Transfer& own) { own.tellEnd([&error](const auto& to) { to.failed(error); }); });
    };
    transfer->begin(request, std::move(report));
    return std::make_unique<Task>(std::move(transfer));
}

void QtFileDownloads::removeAbandoned(const QString& directory) {
    UnnamedFile::removeUnlocked(directory);
}

/// From the first time on that there seems to be no network: where the desktop knows, we needn't guess.
void QtFileDownloads::followNetwork() {
    if (std::exchange(m_followsNetwork, true))
        return;
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
        return;
    connect(QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, this,
            &QtFileDownloads::tellPresence);
    tellPresence();
}

void QtFileDownloads::tellPresence() {
    const auto running = m_thread.lock();
    const auto* const network = QNetworkInformation::instance();
    if (!running || network == nullptr)
        return;
    switch (network->reachability()) {
    case QNetworkInformation::Reachability::Online:
        running->setPresence(NetworkPresence::There);
        break;
    case QNetworkInformation::Reachability::Disconnected:
        running->setPresence(NetworkPresence::Away);
        break;
    default:
        running->setPresence(NetworkPresence::Unknown);
    }
}

} // namespace talvera
