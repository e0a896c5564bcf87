// SPDX-License-Identifier: MIT
#pragma once

#include "linux/network/DownloadLimits.h"
#include "linux/network/HttpTransfer.h"

#include <QThread>

#include <atomic>
#include <cstdint>
#include <memory>

namespace talvera {

class DownloadWorker;

/// The thread on which transfers run, as many at a time as there are. Made, used and destroyed on the main
/// thread.
class DownloadThread final : public QThread {
public:
    /// `trustedToo` is a file of certificates that servers may show beside the system's; empty for none.
    DownloadThread(const DownloadLimits& limits, const QString& trustedToo);
    /// Breaks off what still runs.
    ~DownloadThread() override;

    using TransferId = std::uint64_t;

    TransferId begin(DownloadRequest request, HttpTransfer::Report report);

    /// Breaks the transfer off, soon; one that has ended is fine.
    void cancel(TransferId transfer);

    void setPresence(NetworkPresence presence);

private:
    std::shared_ptr<std::atomic<NetworkPresence>> m_presence;
    DownloadWorker* m_worker; ///< lives on the thread, and ends with it
    TransferId m_next = 1;
};

} // namespace talvera
