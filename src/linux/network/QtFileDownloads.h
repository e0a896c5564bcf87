// SPDX-License-Identifier: MIT
#pragma once

#include "linux/network/DownloadLimits.h"
#include "platform/network/FileDownloads.h"

#include <QObject>
#include <QString>

#include <memory>

namespace talvera {

class DownloadThread;
class MainActor;

/// Downloads by the toolkit's HTTP over TLS, with the proxy and the certificates of the system. The transfers
/// run on a thread that is there as long as one of them is.
class QtFileDownloads final : public QObject, public FileDownloads {
public:
    struct Options {
        DownloadLimits limits{};
        /// A file of certificates (PEM) that are trusted beside the system's; for servers of tests.
        QString trustedToo{};
    };

    explicit QtFileDownloads(MainActor& actor);
    QtFileDownloads(MainActor& actor, Options options);
    ~QtFileDownloads() override;

    std::unique_ptr<DownloadTask> download(const DownloadRequest& request, DownloadEvents events) override;
    void removeAbandoned(const QString& directory) override;

private:
    class Transfer;
    class Task;

    std::shared_ptr<DownloadThread> thread();
    void followNetwork();
    void tellPresence();

    MainActor& m_actor;
    const Options m_options;
    std::weak_ptr<DownloadThread> m_thread;
    bool m_followsNetwork = false;
};

} // namespace talvera
