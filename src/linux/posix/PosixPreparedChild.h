// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/WorkThreads.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/support/FileDescriptor.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace talvera {

/// The threads of prepared children, one for each, which lasts as long as its child.
class PreparedChildren {
public:
    PreparedChildren();
    PreparedChildren(const PreparedChildren&) = delete;
    PreparedChildren& operator=(const PreparedChildren&) = delete;
    /// Ends the children that are left, and waits for their threads.
    ~PreparedChildren();

    /// Throws std::system_error when the system has no thread to give.
    void start(std::function<void()> work);

    /// Tells every child, now and later, to end.
    void endAll();
    /// Readable from then on.
    int ending() const { return m_ending.get(); }

    /// A child that takes the place of another begins when the other's memory is free.
    void countDying(int difference);
    void awaitDying();

private:
    FileDescriptor m_ending; ///< an event that is set for good by endAll
    std::mutex m_mutex;      // guards what follows
    std::condition_variable m_changed;
    int m_dying = 0; ///< children that were told to end, and have not yet
    WorkThreads m_threads;
};

/// A child that waits for its input, watched by a thread of its own: the kernel ends a child when the thread
/// that has started it goes.
class PosixPreparedChild final : public PreparedChild {
public:
    /// Throws std::system_error when the system has no thread to give. `children` must outlive the child
    /// process, which may outlive this object by a moment.
    PosixPreparedChild(PreparedChildren& children, const ChildProcessRequest& request,
                       PosixChildProcess::Limits limits);
    ~PosixPreparedChild() override;
    PosixPreparedChild(const PosixPreparedChild&) = delete;
    PosixPreparedChild& operator=(const PosixPreparedChild&) = delete;

    std::optional<ChildProcessResult> finish(const QByteArray& input) override;
    void end() override;
    bool isReady() const override;

private:
    class Watch;
    std::shared_ptr<Watch> m_watch;
};

} // namespace talvera
