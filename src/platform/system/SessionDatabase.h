// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/DictationSession.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace talvera {

/// The sessions that were recorded. They are only ever added. Used by one thread at a time. Failures are
/// thrown as PlatformError (domain "SessionDatabase").
class SessionDatabase {
public:
    virtual ~SessionDatabase() = default;

    /// Adds all of them or, when it throws, none. What has been added survives the end of the process,
    /// however that comes.
    virtual void insert(const std::vector<DictationSession>& sessions) = 0;

    /// Calls `visit` for each session in the order in which they were added; with `after`, for those with a
    /// later timestamp alone. The session is valid for the length of the call.
    virtual void forEach(std::optional<WallTime> after,
                         const std::function<void(const DictationSession&)>& visit) = 0;

    /// Whether anybody else has added sessions since this was last asked, or since it was opened.
    virtual bool hasGrownElsewhere() = 0;
};

/// Opens databases. Any thread.
class SessionDatabases {
public:
    virtual ~SessionDatabases() = default;

    /// Opens the file, and makes it if there is none; its directory exists. Throws PlatformError. A file that
    /// is none of ours or is damaged has been moved to another name by then, so that the next attempt finds
    /// the place free.
    virtual std::unique_ptr<SessionDatabase> open(const QString& path) = 0;

    /// One that ends with the process. Throws PlatformError.
    virtual std::unique_ptr<SessionDatabase> openInMemory() = 0;
};

} // namespace talvera
