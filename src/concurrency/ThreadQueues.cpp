// SPDX-License-Identifier: MIT
#include "concurrency/ThreadQueues.h"

#include <utility>

#include <pthread.h>

namespace talvera {

ThreadSerialQueue::ThreadSerialQueue(std::string label)
    : m_label(std::move(label)) {}

ThreadSerialQueue::~ThreadSerialQueue() {
    {
        const std::scoped_lock lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void ThreadSerialQueue::async(std::function<void()> job) {
    const std::scoped_lock lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_changed.notify_all();
}

void ThreadSerialQueue::sleep(Duration duration) {
    std::this_thread::sleep_for(duration);
}

void ThreadSerialQueue::run() {
    pthread_setname_np(pthread_self(), m_label.substr(0, 15).c_str());
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_ending || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const auto job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

void ThreadBackgroundPool::run(std::function<void()> work, std::function<void()> done) {
    m_threads.start("background", [this, work = std::move(work), done = std::move(done)]() mutable {
        work();
        work = nullptr; // it is gone before anybody hears that it is done
        m_mainActor.post(std::move(done));
    });
}

void ThreadBackgroundPool::finish() {
    m_isEnding = true;
    m_threads.join();
}

} // namespace talvera
