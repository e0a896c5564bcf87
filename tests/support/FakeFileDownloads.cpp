// SPDX-License-Identifier: MIT
#include "FakeFileDownloads.h"

#include <algorithm>
#include <utility>

namespace talvera::test {

class FakeFileDownloads::Task final : public DownloadTask {
public:
    explicit Task(std::shared_ptr<Transfer> transfer)
        : m_transfer(std::move(transfer)) {}
    ~Task() override { m_transfer->m_cancelled = m_transfer->m_cancelled || !m_transfer->m_ended; }
    void cancel() override { m_transfer->m_cancelled = m_transfer->m_cancelled || !m_transfer->m_ended; }

private:
    std::shared_ptr<Transfer> m_transfer;
};

class FakeFileDownloads::File final : public DeliveredFile {
public:
    File(FakeFileSystem& files, QByteArray bytes, std::shared_ptr<std::multiset<QString>> inUse)
        : m_files(files)
        , m_bytes(std::move(bytes))
        , m_inUse(std::move(inUse)) {}
    ~File() override {
        if (const auto own = m_inUse->find(m_path); own != m_inUse->end())
            m_inUse->erase(own);
    }

    void moveTo(const QString& path) override {
        try {
            m_files.write(path, m_bytes);
        } catch (const PlatformError& error) {
            throw PlatformError(DownloadFailure::CannotSave, error.message());
        }
        m_path = path;
        m_inUse->insert(path);
    }

private:
    FakeFileSystem& m_files;
    const QByteArray m_bytes;
    QString m_path;
    std::shared_ptr<std::multiset<QString>> m_inUse;
};

FakeFileDownloads::Transfer::Transfer(FakeFileDownloads& owner, DownloadRequest asked, DownloadEvents events)
    : request(std::move(asked))
    , m_owner(owner)
    , m_events(std::move(events)) {}

void FakeFileDownloads::Transfer::tell(std::function<void(const DownloadEvents&)> event, bool isLast) {
    m_owner.m_actor.post([self = shared_from_this(), event = std::move(event), isLast] {
        if (!self->isRunning())
            return;
        self->m_ended = isLast;
        event(self->m_events);
    });
}

void FakeFileDownloads::Transfer::write(qint64 bytesWritten) {
    if (bytesWritten > request.sizeLimit) {
        fail(DownloadFailure::TooLarge);
        return;
    }
    tell([bytesWritten](const DownloadEvents& events) { events.wrote(bytesWritten); });
}

void FakeFileDownloads::Transfer::wait(bool waits) {
    tell([waits](const DownloadEvents& events) { events.waiting(waits); });
}

void FakeFileDownloads::Transfer::finish(const QByteArray& bytes) {
    write(bytes.size());
    tell(
        [this, bytes](const DownloadEvents& events) {
            events.finished(std::make_shared<File>(m_owner.m_files, bytes, m_owner.m_inUse));
        },
        true);
}

void FakeFileDownloads::Transfer::fail(DownloadFailure failure) {
    tell([failure](const DownloadEvents& events) { events.failed(PlatformError(failure)); }, true);
}

void FakeFileDownloads::Transfer::answer(const FakeReply& reply) {
    if (!m_owner.m_online) {
        m_held = reply;
        wait(true);
        return;
    }
    m_owner.m_actor.startTimer(reply.takes, [self = shared_from_this(), reply] {
        if (self->isRunning() && self->m_owner.onEnd)
            self->m_owner.onEnd(reply);
        if (reply.failure)
            self->fail(*reply.failure);
        else
            self->finish(reply.bytes);
    });
}

void FakeFileDownloads::Transfer::goOnline() {
    if (!m_held)
        return;
    wait(false);
    answer(*std::exchange(m_held, std::nullopt));
}

FakeFileDownloads::FakeFileDownloads(MainActor& actor, FakeFileSystem& files)
    : m_actor(actor)
    , m_files(files) {}

FakeFileDownloads::~FakeFileDownloads() = default;

std::unique_ptr<DownloadTask> FakeFileDownloads::download(const DownloadRequest& request,
                                                          DownloadEvents events) {
    auto transfer = std::make_shared<Transfer>(*this, request, std::move(events));
    transfers.push_back(transfer);
    if (const auto reply = m_replies.find(request.url); reply != m_replies.end())
        transfer->answer(reply->second);
    return std::make_unique<Task>(std::move(transfer));
}

void FakeFileDownloads::removeAbandoned(const QString& directory) {
    for (const auto& path : m_files.files()) {
        const bool isThere = path.left(path.lastIndexOf(u'/')) == directory;
        if (isThere && m_inUse->count(path) == 0)
            removeIfPossible(m_files, path);
    }
}

void FakeFileDownloads::serve(const QUrl& url, const FakeReply& reply) {
    m_replies.insert_or_assign(url, reply);
}

bool FakeFileDownloads::isBusy() const {
    return std::any_of(transfers.begin(), transfers.end(),
                       [](const auto& transfer) { return transfer->isRunning(); });
}

void FakeFileDownloads::setOnline(bool online) {
    m_online = online;
    if (!online)
        return;
    for (const auto& transfer : transfers)
        transfer->goOnline();
}

} // namespace talvera::test
