// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/network/FileDownloads.h"

#include <utility>

namespace talvera {

/// A machine without a network: every download fails.
class NoFileDownloads final : public FileDownloads {
public:
    explicit NoFileDownloads(MainActor& actor)
        : m_actor(actor) {}

    std::unique_ptr<DownloadTask> download(const DownloadRequest&, DownloadEvents events) override {
        auto task = std::make_unique<Task>();
        m_actor.post([cancelled = task->cancelled, events = std::move(events)] {
            if (!*cancelled)
                events.failed(PlatformError(DownloadFailure::NoNetwork));
        });
        return task;
    }
    void removeAbandoned(const QString&) override {}

private:
    class Task final : public DownloadTask {
    public:
        ~Task() override { *cancelled = true; }
        void cancel() override { *cancelled = true; }

        std::shared_ptr<bool> cancelled = std::make_shared<bool>(false);
    };

    MainActor& m_actor;
};

} // namespace talvera
