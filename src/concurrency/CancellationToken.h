// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace talvera {

/// Asks a task to end early. Copies share one flag. Main thread only. Cancelling is cooperative: it ends the
/// sleep that the task is in, and the task looks at the flag afterwards.
class CancellationToken {
public:
    CancellationToken()
        : m_state(std::make_shared<State>()) {}

    /// Sets the flag and wakes a sleep that was given this token. Calling it again does nothing.
    void cancel() const {
        if (m_state->cancelled)
            return;
        m_state->cancelled = true;
        if (const auto wake = std::exchange(m_state->wake, nullptr))
            wake();
    }

    bool isCancelled() const { return m_state->cancelled; }

    /// What cancel() calls, once. Used by MainActor::sleep; a token serves one sleep at a time.
    void onCancel(std::function<void()> wake) const { m_state->wake = std::move(wake); }

private:
    struct State {
        bool cancelled = false;
        std::function<void()> wake;
    };
    std::shared_ptr<State> m_state;
};

} // namespace talvera
