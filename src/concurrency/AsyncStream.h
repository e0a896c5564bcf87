// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"

#include <coroutine>
#include <deque>
#include <exception>
#include <optional>
#include <utility>

namespace talvera {

/// Values that come one after another, and an end. Who gives them never waits: they are kept until they are
/// asked for, in order. One coroutine at a time asks for the next. Main thread only.
template <typename T>
class AsyncStream {
public:
    class Next;

    explicit AsyncStream(MainActor& actor)
        : m_actor(actor) {}
    AsyncStream(const AsyncStream&) = delete;
    AsyncStream& operator=(const AsyncStream&) = delete;

    void push(T value) {
        m_values.push_back(std::move(value));
        wake();
    }

    /// No more will come.
    void finish() {
        m_isOver = true;
        wake();
    }

    /// No more will come, for this reason.
    void fail(std::exception_ptr failure) {
        m_failure = std::move(failure);
        finish();
    }

    /// For co_await: the next value, or nothing after the last one. Throws what it failed with, once, behind
    /// all values. The one who waits goes on in a turn of its own, and the stream has to live until then.
    Next next() { return Next(*this); }

private:
    void wake() {
        if (const auto waiting = std::exchange(m_waiting, nullptr))
            m_actor.post([waiting] { waiting.resume(); });
    }

    std::optional<T> take() {
        if (!m_values.empty()) {
            std::optional<T> value(std::move(m_values.front()));
            m_values.pop_front();
            return value;
        }
        if (const auto failure = std::exchange(m_failure, nullptr))
            std::rethrow_exception(failure);
        return std::nullopt;
    }

    MainActor& m_actor;
    std::deque<T> m_values;
    bool m_isOver = false;
    std::exception_ptr m_failure;
    std::coroutine_handle<> m_waiting;
};

/// What AsyncStream::next returns, for co_await.
template <typename T>
class AsyncStream<T>::Next {
public:
    explicit Next(AsyncStream& stream)
        : m_stream(stream) {}

    bool await_ready() const { return m_stream.m_isOver || !m_stream.m_values.empty(); }
    void await_suspend(std::coroutine_handle<> waiting) { m_stream.m_waiting = waiting; }
    std::optional<T> await_resume() { return m_stream.take(); }

private:
    AsyncStream& m_stream;
};

} // namespace talvera
