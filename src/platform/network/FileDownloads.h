// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PlatformError.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

namespace talvera {

/// Codes of the PlatformErrors that downloads fail with.
enum class DownloadFailure {
    NoNetwork = 1,      ///< there was none for as long as a download may take
    ServerNotFound = 2, ///< nobody knows a machine of that name
    ServerAway = 3,     ///< that machine doesn't take the connection
    ConnectionLost = 4, ///< it broke off before all had come
    ServerSilent = 5,   ///< nothing came for a minute
    TookTooLong = 6,    ///< not all had come after an hour
    NotTrusted = 7,     ///< who answered could not prove to be the server
    RedirectLoop = 8,   ///< one address led to the next without end
    TooLarge = 9,       ///< more came than was asked for at most
    DiskFull = 10,
    CannotSave = 11,
    ProxyRefused = 12,
    Other = 13,
};

inline QString platformDomain(DownloadFailure) {
    return QStringLiteral("FileDownloads");
}

/// What to fetch, and where its bytes lie until all have come.
struct DownloadRequest {
    QUrl url;
    QString directory;    ///< on the disk that the file shall stay on; made if it is missing
    qint64 sizeLimit = 0; ///< more bytes than this are a failure (DownloadFailure::TooLarge)
};

/// A file that has come whole. It has no name yet, and goes with this object unless it gets one.
class DeliveredFile {
public:
    virtual ~DeliveredFile() = default;

    /// Gives the file its name, in a directory of the disk that it lies on. To be called once. As long as
    /// this object lives the file is known to be in use, see removeAbandoned(). Throws PlatformError
    /// (DownloadFailure::CannotSave).
    virtual void moveTo(const QString& path) = 0;
};

/// What becomes of a download. All are called on the main actor, in later turns; after `finished` or `failed`
/// nothing more comes.
struct DownloadEvents {
    /// So many bytes have come by now; some twenty times a second at most.
    std::function<void(qint64 bytesWritten)> wrote;
    /// There is no network: the download begins when there is one. False when it goes on.
    std::function<void(bool waits)> waiting;
    /// All has come. Whatever the server calls its answer, also an error's page is a file.
    std::function<void(std::shared_ptr<DeliveredFile> file)> finished;
    /// It has failed, with a code of DownloadFailure.
    std::function<void(const PlatformError& error)> failed;
};

/// A download under way; letting it go cancels it.
class DownloadTask {
public:
    virtual ~DownloadTask() = default;

    /// Ends it, if it still runs: what has come is deleted, and no event comes any more. Main thread only.
    virtual void cancel() = 0;
};

/// Fetches files by HTTPS, or by HTTP where a redirection leads there. Main thread only; the transfers run
/// elsewhere and hold nobody up.
///
/// A download that finds no network waits for one. It follows redirections, a bounded number of them; it
/// fails when nothing comes for a minute, and when it isn't over after an hour, waiting included. It is never
/// resumed, and whatever happens, also to this process, no half of a file ever has a name that was given by
/// moveTo().
class FileDownloads {
public:
    virtual ~FileDownloads() = default;

    virtual std::unique_ptr<DownloadTask> download(const DownloadRequest& request, DownloadEvents events) = 0;

    /// Deletes the files of that directory that no running program uses: what a process that was killed has
    /// left of its downloads. What can't be deleted stays.
    virtual void removeAbandoned(const QString& directory) = 0;
};

} // namespace talvera
