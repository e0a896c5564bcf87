// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace talvera::test {

/// A job that may wait in the middle, with a stack of its own and no thread of the system's: it runs when
/// it is told to, until it pauses or ends. So jobs and the main actor take turns in an order that is the
/// same every time. One that is destroyed while it pauses is dropped as it stands, without its destructors.
class SimulatedThread {
public:
    /// `job` must not throw.
    explicit SimulatedThread(std::function<void()> job);
    ~SimulatedThread();
    SimulatedThread(const SimulatedThread&) = delete;
    SimulatedThread& operator=(const SimulatedThread&) = delete;

    /// Runs the job on, up to its next pause or its end. Not from within a job.
    void resume();
    bool hasEnded() const;

    /// The one whose job asks; null outside of all jobs.
    static SimulatedThread* current();
    /// Gives the turn back to who has resumed it. From within its job only.
    void pause();

private:
    struct Context;

    std::unique_ptr<Context> m_context;
};

} // namespace talvera::test
