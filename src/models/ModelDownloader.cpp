// SPDX-License-Identifier: MIT
#include "models/ModelDownloader.h"

#include "concurrency/onBackground.h"
#include "models/ModelInstallation.h"
#include "models/ModelStore.h"
#include "models/downloadFailureText.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "text/Localization.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

/// Beyond this many times the expected size nobody can mean the model.
constexpr qint64 tolerance = 2;
/// The disk keeps so much for everything else.
constexpr qint64 spareRoom = 64 << 20;

void tolerateFailure(const std::function<void()>& work) {
    try {
        work();
    } catch (const PlatformError&) { // what comes next reports it better
    }
}

QString megabytes(qint64 bytes) {
    return QLocale::c().toString(bytes / 1'000'000);
}

} // namespace

ModelDownloader::ModelDownloader(Parts parts)
    : m_parts(std::move(parts))
    , m_downloadsDir(m_parts.store.downloadsDir)
    , m_main{QStringLiteral("main"), m_parts.source.main, mainFileDone, &ModelDownloader::installMain}
    , m_encoder{QStringLiteral("encoder"), m_parts.source.encoder, encoderDone,
                &ModelDownloader::installEncoder} {}

ModelDownloader::~ModelDownloader() = default;

void ModelDownloader::start() {
    if (phase.get().isBusy())
        return;
    removeLeftovers();
    if (m_parts.store.isReady()) {
        mainFileDone.set(true);
        encoderDone.set(true);
        progress.set(1.0);
        phase.set(Phase::Done);
        return;
    }
    m_failure.reset();
    m_main.bytes = 0;
    m_encoder.bytes = 0;
    bytesWritten.set(0);
    bytesTotal.set(m_main.source.expectedSize + m_encoder.source.expectedSize);
    progress.set(0.0);
    mainFileDone.set(m_parts.store.hasMainFile());
    encoderDone.set(m_parts.store.hasEncoder());
    if (const auto lack = lackOfRoom()) {
        fail(*lack);
        return;
    }
    phase.set(Phase::Downloading);
    begin(m_main);
    begin(m_encoder);
    if (mainFileDone.get() && encoderDone.get())
        phase.set(Phase::Done);
}

/// What programs that were killed have left, once; and an encoder that is half unpacked.
void ModelDownloader::removeLeftovers() {
    if (!std::exchange(m_leftoversRemoved, true))
        m_parts.network.removeAbandoned(m_downloadsDir);
    m_parts.store.discardHalfUnpacked();
}

/// What the user has to know when the disk has no room for what is missing.
std::optional<QString> ModelDownloader::lackOfRoom() const {
    const auto available = m_parts.files.availableBytes(m_parts.store.applicationSupportDir);
    if (!available)
        return std::nullopt;
    qint64 needed = 0;
    if (!mainFileDone.get())
        needed += m_main.source.expectedSize;
    if (!encoderDone.get())
        needed += 2 * m_encoder.source.expectedSize; // the archive, and what it unpacks to
    if (needed == 0 || *available >= needed + spareRoom)
        return std::nullopt;
    const auto text =
        localized("download.failed.noRoom",
                  "There is not enough room on the disk: %@ MB are needed, and %@ MB are free.");
    return formatted(formatted(text, megabytes(needed + spareRoom)), megabytes(*available));
}

void ModelDownloader::begin(Item& item) {
    item.waits = false;
    if (item.done.get()) {
        item.bytes = item.source.expectedSize;
        updateProgress();
        return;
    }
    item.task = m_parts.network.download(
        {item.source.url, m_downloadsDir, tolerance * item.source.expectedSize}, events(item));
}

/// A task that is cancelled or let go tells nothing any more, so these live no longer than this object.
DownloadEvents ModelDownloader::events(Item& item) {
    return {.wrote =
                [this, &item](qint64 written) {
                    item.bytes = written;
                    updateProgress();
                },
            .waiting =
                [this, &item](bool waits) {
                    item.waits = waits;
                    updateWaiting();
                },
            .finished = [this,
                         &item](std::shared_ptr<DeliveredFile> file) { takeDelivery(item, std::move(file)); },
            .failed =
                [this](const PlatformError& error) {
                    inTurn([this, message = downloadFailureText(error)] { fail(message); });
                }};
}

void ModelDownloader::updateProgress() {
    const auto total = m_main.source.expectedSize + m_encoder.source.expectedSize;
    const auto written = std::min<std::int64_t>(m_main.bytes, m_main.source.expectedSize) +
                         std::min<std::int64_t>(m_encoder.bytes, m_encoder.source.expectedSize);
    bytesWritten.set(written);
    bytesTotal.set(total);
    progress.set(static_cast<double>(written) / static_cast<double>(total));
}

void ModelDownloader::updateWaiting() {
    const bool waits = m_main.waits || m_encoder.waits;
    if (waits != waitsForNetwork.get())
        waitsForNetwork.set(waits);
}

void ModelDownloader::takeDelivery(Item& item, std::shared_ptr<DeliveredFile> file) {
    const auto path =
        QStringLiteral("%1/%2-%3.tmp").arg(m_downloadsDir, item.description, m_parts.makeFreshName());
    tolerateFailure([&] { m_parts.files.createDirectories(m_downloadsDir); });
    try {
        file->moveTo(path);
    } catch (const PlatformError& error) {
        const auto text = localized("download.failed.notSaved", "Could not save download: %@");
        inTurn([this, message = formatted(text, downloadFailureText(error))] { fail(message); });
        return;
    }
    inTurn([this, &item, path, file = std::move(file), attempt = m_attempt] {
        if (attempt == m_attempt)
            installDelivered(item, path, file);
    });
}

/// While it runs, all else waits for its turn. The file is held until it is in its place.
Task<void> ModelDownloader::installDelivered(Item& item, QString path, std::shared_ptr<DeliveredFile> file) {
    const auto owner = m_lifetime.token();
    m_installs = true;
    std::optional<QString> failure;
    try {
        co_await (this->*item.install)(path);
    } catch (const PlatformError& error) {
        failure = downloadFailureText(error);
    }
    if (!owner.isAlive())
        co_return;
    file.reset();
    m_installs = false;
    if (failure)
        fail(*failure);
    else
        installed();
    runWaitingSteps();
}

/// The end of the program doesn't wait for half a gigabyte to be read.
Verification ModelDownloader::verification(const Item& item) const {
    return {item.source.sha256, [&pool = m_parts.background] { return pool.isEnding(); }};
}

Task<void> ModelDownloader::installMain(QString path) {
    const auto owner = m_lifetime.token();
    phase.set(Phase::Verifying);
    std::function<QString()> install = [&files = m_parts.files, &store = m_parts.store, path,
                                        verification = verification(m_main)] {
        installMainFile(files, store, path, verification);
        return QString();
    };
    co_await onBackground(m_parts.background, std::move(install));
    if (owner.isAlive())
        mainFileDone.set(true);
}

Task<void> ModelDownloader::installEncoder(QString path) {
    const auto owner = m_lifetime.token();
    phase.set(Phase::Verifying);
    std::function<QString()> verify = [&files = m_parts.files, path, verification = verification(m_encoder)] {
        verifyEncoder(files, path, verification);
        return QString();
    };
    co_await onBackground(m_parts.background, std::move(verify));
    if (!owner.isAlive())
        co_return;
    phase.set(Phase::Extracting);
    std::function<QString()> unpack = [&files = m_parts.files, &processes = m_parts.processes,
                                       &store = m_parts.store, path,
                                       temporary = m_parts.directories.temporary] {
        unpackEncoder(files, processes, store, path, temporary);
        return QString();
    };
    co_await onBackground(m_parts.background, std::move(unpack));
    if (owner.isAlive())
        encoderDone.set(true);
}

/// After a failure of the other file nothing more will come, so the user has to go on reading of it.
void ModelDownloader::installed() {
    phase.set(Phase::Downloading);
    finishIfComplete();
    if (m_failure && phase.get() != Phase::Done)
        phase.set(Phase::failed(*m_failure));
}

void ModelDownloader::finishIfComplete() {
    if (!mainFileDone.get() || !encoderDone.get())
        return;
    m_parts.store.recordReadiness();
    phase.set(Phase::Done);
    progress.set(1.0);
}

void ModelDownloader::fail(const QString& message) {
    cancelTasks();
    m_failure = message;
    phase.set(Phase::failed(message));
}

void ModelDownloader::cancelTasks() {
    for (auto* item : {&m_main, &m_encoder}) {
        if (item->task)
            item->task->cancel();
        item->waits = false;
    }
    updateWaiting();
}

void ModelDownloader::retry() {
    inTurn([this] {
        cancelTasks();
        m_main.task.reset();
        m_encoder.task.reset();
        ++m_attempt;
        phase.set(Phase::Idle);
        tolerateFailure([&] { m_parts.files.removeAll(m_downloadsDir); });
        tolerateFailure([&] { m_parts.files.createDirectories(m_downloadsDir); });
        start();
    });
}

/// Runs the step now, or after the installation that is under way.
void ModelDownloader::inTurn(std::function<void()> step) {
    m_waitingSteps.push_back(std::move(step));
    runWaitingSteps();
}

void ModelDownloader::runWaitingSteps() {
    while (!m_installs && !m_waitingSteps.empty()) {
        const auto step = std::move(m_waitingSteps.front());
        m_waitingSteps.pop_front();
        step();
    }
}

} // namespace talvera
