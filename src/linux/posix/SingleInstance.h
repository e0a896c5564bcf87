// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QString>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace talvera {

/// Lets one process of a kind run in a directory, and lets a second one speak to it. The kernel takes back
/// what a dead process held, so a crash locks nobody out. Main thread only.
class SingleInstance {
public:
    /// Tries to become the first. `directory` is private to the user. Throws PlatformError (domain
    /// "SingleInstance", code errno) when its files can't be made.
    explicit SingleInstance(const QString& directory);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return m_listener.isOpen(); }

    /// For a process that isn't the first: tells the first that there was another start. False when the first
    /// doesn't listen.
    bool tellFirst() const;

    /// For the first: `heard` is called from the event loop for every other start from now on.
    void onSecondStart(std::function<void()> heard);

private:
    void listen();

    QString m_socketPath;
    FileDescriptor m_lock;
    FileDescriptor m_listener;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace talvera
