// SPDX-License-Identifier: MIT
#pragma once

#include "FakeFileSystem.h"
#include "concurrency/MainActor.h"
#include "platform/network/FileDownloads.h"

#include <QByteArray>
#include <QUrl>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera::test {

/// What a server does with a request.
struct FakeReply {
    QByteArray bytes{};
    Duration takes = std::chrono::seconds(1);
    std::optional<DownloadFailure> failure{}; ///< at the end of that time, in the place of the file
};

/// Downloads from servers that answer as they are told, on the main actor's clock. A request that no reply
/// stands ready for is left to the test, which finds it in `transfers`.
class FakeFileDownloads final : public FileDownloads {
public:
    /// One download, as the server sees it. What it tells comes in a later turn.
    class Transfer : public std::enable_shared_from_this<Transfer> {
    public:
        Transfer(FakeFileDownloads& owner, DownloadRequest asked, DownloadEvents events);

        const DownloadRequest request;

        bool isCancelled() const { return m_cancelled; }
        /// Neither ended nor cancelled.
        bool isRunning() const { return !m_cancelled && !m_ended; }

        void write(qint64 bytesWritten);
        void wait(bool waits);
        void finish(const QByteArray& bytes);
        void fail(DownloadFailure failure);

    private:
        friend class FakeFileDownloads;
        void tell(std::function<void(const DownloadEvents&)> event, bool isLast = false);
        void answer(const FakeReply& reply);
        void goOnline();

        FakeFileDownloads& m_owner;
        const DownloadEvents m_events;
        bool m_cancelled = false;
        bool m_ended = false;
        std::optional<FakeReply> m_held; ///< until there is a network
    };

    FakeFileDownloads(MainActor& actor, FakeFileSystem& files);
    ~FakeFileDownloads() override;

    std::unique_ptr<DownloadTask> download(const DownloadRequest& request, DownloadEvents events) override;
    void removeAbandoned(const QString& directory) override;

    /// All downloads so far.
    std::vector<std::shared_ptr<Transfer>> transfers;

    /// Answers the coming requests for this address.
    void serve(const QUrl& url, const FakeReply& reply);

    /// Whether there is a network; downloads wait for it.
    void setOnline(bool online);

    /// A download is under way.
    bool isBusy() const;

    /// Called when the server has answered one that is under way, before it is told.
    std::function<void(const FakeReply&)> onEnd;

private:
    class Task;
    class File;

    MainActor& m_actor;
    FakeFileSystem& m_files;
    bool m_online = true;
    std::map<QUrl, FakeReply> m_replies;
    std::shared_ptr<std::multiset<QString>> m_inUse = std::make_shared<std::multiset<QString>>();
};

} // namespace talvera::test
