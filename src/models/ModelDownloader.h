// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "concurrency/Task.h"
#include "models/ModelSource.h"
#include "platform/network/FileDownloads.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class BackgroundPool;
class ChildProcess;
class FileSystem;
class ModelStore;
struct Directories;
struct Verification;

/// Brings the speech model onto the disk: fetches what is missing of it, all at the same time, verifies each
/// file, and puts it in place or unpacks it. Main thread only; what takes long is done in the background.
///
/// A transfer is never resumed: each attempt fetches what is missing from its first byte, and what has been
/// installed stays. A transfer that is cut off by the end of the program leaves nothing.
class ModelDownloader {
public:
    class Phase {
    public:
        enum class Case { Idle, Downloading, Verifying, Extracting, Done, Failed };
        using enum Case;

        Phase(Case kind) // NOLINT(google-explicit-constructor): a case is a phase
            : m_kind(kind) {}
        static Phase failed(QString message) { return {Failed, std::move(message)}; }

        Case kind() const { return m_kind; }
        /// For the user; empty in every other case than Failed.
        const QString& message() const { return m_message; }
        /// A file is on its way.
        bool isBusy() const { return m_kind == Downloading || m_kind == Verifying || m_kind == Extracting; }

        bool operator==(const Phase&) const = default;

    private:
        Phase(Case kind, QString message)
            : m_kind(kind)
            , m_message(std::move(message)) {}

        Case m_kind;
        QString m_message;
    };

    /// What it works with; all of it outlives the downloader, and what runs in the background ends before it.
    struct Parts {
        BackgroundPool& background;
        FileDownloads& network;
        FileSystem& files;
        ChildProcess& processes;
        const Directories& directories;
        std::function<QString()> makeFreshName; ///< a part for a file's name that no other file has
        ModelStore& store;
        ModelSource source;
    };

    explicit ModelDownloader(Parts parts);
    ~ModelDownloader();
    ModelDownloader(const ModelDownloader&) = delete;
    ModelDownloader& operator=(const ModelDownloader&) = delete;

    /// Begins the download of what is missing; does nothing while one is under way. Safe to call at any time.
    void start();

    /// Discards everything that is on its way, and starts.
    void retry();

    Published<Phase> phase{Phase::Idle};
    Published<double> progress{0.0}; ///< 0 to 1
    Published<std::int64_t> bytesWritten{0};
    Published<std::int64_t> bytesTotal{0}; ///< as it is known beforehand; what servers say doesn't count
    Published<bool> mainFileDone{false};
    Published<bool> encoderDone{false};

    /// There is no network: the download begins by itself when there is one.
    Published<bool> waitsForNetwork{false};

    /// What is fetched.
    const ModelSource& source() const { return m_parts.source; }

private:
    /// One of the two files on its way.
    struct Item {
        const QString description; ///< "main" or "encoder"
        const ModelItem& source;
        Published<bool>& done;
        Task<void> (ModelDownloader::*install)(QString path);
        std::int64_t bytes = 0;
        bool waits = false;
        std::unique_ptr<DownloadTask> task{};
    };

    void removeLeftovers();
    std::optional<QString> lackOfRoom() const;
    void begin(Item& item);
    DownloadEvents events(Item& item);
    void updateProgress();
    void updateWaiting();

    void takeDelivery(Item& item, std::shared_ptr<DeliveredFile> file);
    Task<void> installDelivered(Item& item, QString path, std::shared_ptr<DeliveredFile> file);
    Verification verification(const Item& item) const;
    Task<void> installMain(QString path);
    Task<void> installEncoder(QString path);
    void installed();
    void finishIfComplete();

    void fail(const QString& message);
    void cancelTasks();
    void inTurn(std::function<void()> step);
    void runWaitingSteps();

    const Parts m_parts;
    const QString m_downloadsDir;
    Item m_main;
    Item m_encoder;
    bool m_leftoversRemoved = false;
    int m_attempt = 0;                ///< counts the retries: what an earlier one fetched is worth nothing
    std::optional<QString> m_failure; ///< of this attempt
    bool m_installs = false;
    std::deque<std::function<void()>> m_waitingSteps; ///< for the end of an installation
    Lifetime m_lifetime;
};

} // namespace talvera
