// SPDX-License-Identifier: MIT
#include "concurrency/WorkThreads.h"

#include <system_error>
#include <utility>

#include <pthread.h>

namespace talvera {

void WorkThreads::start(const char* name, std::function<void()> work) {
    const std::scoped_lock lock(m_mutex);
    m_threads.remove_if([](const WorkThread& thread) { return thread.hasEnded.load(); });
    auto& thread = m_threads.emplace_back();
    try {
        thread.joined = std::jthread([name, &hasEnded = thread.hasEnded, work = std::move(work)]() mutable {
            pthread_setname_np(pthread_self(), name);
            work();
            work = nullptr; // what it holds may not outlive whoever waits for it
            hasEnded = true;
        });
    } catch (const std::system_error&) {
        m_threads.pop_back();
        throw;
    }
}

void WorkThreads::join() {
    for (;;) {
        std::list<WorkThread> threads;
        {
            const std::scoped_lock lock(m_mutex);
            threads.swap(m_threads);
        }
        if (threads.empty())
            return;
    }
}

} // namespace talvera
