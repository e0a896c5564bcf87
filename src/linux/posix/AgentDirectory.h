// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QString>

#include <memory>

class QSocketNotifier;

namespace talvera {

/// A private directory (0700) of this process alone, in one that all agents of a user share; it goes when the
/// process ends, also by exit(). It is locked as long as the process lives, so that the start of another
/// agent can tell what a killed one has left, recordings and core files, from what is in use. Main thread
/// only.
class AgentDirectory {
public:
    /// Removes what processes that have ended left in `shared`, which is private to the user, and makes the
    /// directory there. Throws PlatformError (domain "AgentDirectory", code errno).
    explicit AgentDirectory(const QString& shared);
    ~AgentDirectory();
    AgentDirectory(const AgentDirectory&) = delete;
    AgentDirectory& operator=(const AgentDirectory&) = delete;

    const QString& path() const { return m_path; }

    /// From now on makes the directory anew under the same path as soon as it has gone: systems clean up what
    /// has not been used for days. Works from the event loop, which has to be there already.
    void keepInPlace();

private:
    bool isInPlace() const;
    void restore();
    void watch();

    QString m_shared;
    QString m_path;
    FileDescriptor m_lock;
    FileDescriptor m_changes; ///< inotify's
    std::unique_ptr<QSocketNotifier> m_changed;
};

} // namespace talvera
