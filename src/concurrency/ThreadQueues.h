// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/BackgroundPool.h"
#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "concurrency/WorkThreads.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace talvera {

/// A SerialQueue on a thread of its own, which is made with the first job. Destroying it finishes all jobs.
class ThreadSerialQueue final : public SerialQueue {
public:
    /// `label` names the thread in debuggers, at most 15 characters of it.
    explicit ThreadSerialQueue(std::string label);
    ~ThreadSerialQueue() override;

    void async(std::function<void()> job) override;
    void sleep(Duration duration) override;

private:
    void run();

    std::string m_label;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_jobs;
    bool m_ending = false;
    std::thread m_thread;
};

/// Runs each piece of work on a thread of its own: the pieces are few and long.
class ThreadBackgroundPool final : public BackgroundPool {
public:
    explicit ThreadBackgroundPool(MainActor& mainActor)
        : m_mainActor(mainActor) {}
    ~ThreadBackgroundPool() override { finish(); }

    /// Throws std::system_error when the system has no thread to give; the work isn't done then.
    void run(std::function<void()> work, std::function<void()> done) override;
    bool isEnding() const override { return m_isEnding; }

    /// Waits until all work has ended. From then on it is ending.
    void finish();

private:
    MainActor& m_mainActor;
    std::atomic<bool> m_isEnding = false;
    WorkThreads m_threads;
};

} // namespace talvera
