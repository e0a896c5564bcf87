// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace talvera {

/// What the system knows about a newer version of this program.
struct UpdateAnswer {
    enum class Kind {
        UpToDate,
        Available,   ///< `version` can be installed
        NotAPackage, ///< this copy was not installed by the system
        NoService,   ///< no such service
        Failed,
    };
    Kind kind = Kind::Failed;
    QString version; ///< the newer one

    bool operator==(const UpdateAnswer&) const = default;
};

/// The system's own package service. Main thread only.
class UpdateService {
public:
    virtual ~UpdateService() = default;

    /// Calls `done` once, in a later turn; within minutes in any case. One question at a time.
    virtual void check(std::function<void(const UpdateAnswer&)> done) = 0;
};

} // namespace talvera
