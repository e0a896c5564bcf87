// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace talvera {

/// Threads that do one piece of work each, and are waited for to their very end: what a thread keeps for
/// itself would else be destroyed while the process ends around it.
class WorkThreads {
public:
    WorkThreads() = default;
    WorkThreads(const WorkThreads&) = delete;
    WorkThreads& operator=(const WorkThreads&) = delete;
    ~WorkThreads() { join(); }

    /// Any thread. `name` has 15 characters at most. Throws std::system_error when the system has no thread
    /// to give.
    void start(const char* name, std::function<void()> work);

    /// Waits until all have ended, those too that they start meanwhile.
    void join();

private:
    struct WorkThread {
        std::atomic<bool> hasEnded = false; ///< but for its last breath
        std::jthread joined;
    };

    std::mutex m_mutex; // guards what follows
    std::list<WorkThread> m_threads;
};

} // namespace talvera
