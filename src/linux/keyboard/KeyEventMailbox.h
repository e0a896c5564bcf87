// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/keyboard/EventTap.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

namespace talvera {

/// Takes key events from a tap's thread to the main actor, and notices when it doesn't listen. When an event
/// has waited too long for its answer, all that wait are forgotten, and as soon as the main actor listens
/// again it gets a TapDisabledByTimeout in their place.
class KeyEventMailbox : public std::enable_shared_from_this<KeyEventMailbox> {
public:
    using Receiver = std::function<void(const KeyEvent&)>;
    using Clock = std::chrono::steady_clock;

    /// Made as a shared object, since what is on its way to the main actor keeps it. `bound` is how long an
    /// event may go without an answer; `receiver` runs on the main actor and answers by returning.
    KeyEventMailbox(MainActor& mainActor, Duration bound, Receiver receiver)
        : m_mainActor(mainActor)
        , m_bound(bound)
        , m_receiver(std::move(receiver)) {}

    /// Any thread.
    void send(const KeyEvent& event);

    /// When the event that has waited longest will have waited too long; nothing when none waits. Any thread.
    std::optional<Clock::time_point> deadline() const;

    /// True when an event has waited too long by now; from here on nothing that is sent is taken until the
    /// main actor has been told. Any thread.
    bool giveUpIfOverdue();

    /// The keys whose presses the main actor was handed, but not their ends. Any thread.
    std::set<VirtualKey> heardPresses() const;

    /// The main actor still has to be told that it was given up. Any thread.
    bool hasGivenUp() const;

    /// The receiver is not called any more. Main thread.
    void close();

private:
    struct Letter {
        KeyEvent event;
        Clock::time_point sentAt;
    };

    void deliver();
    /// The next one to be delivered; it keeps its place until it is answered. Ends the delivery when there is
    /// none.
    std::optional<KeyEvent> next();
    void markAnswered();

    MainActor& m_mainActor;
    const Duration m_bound;
    Receiver m_receiver; // of the main thread alone

    mutable std::mutex m_mutex; // guards the rest
    std::deque<Letter> m_waiting;
    bool m_isDelivering = false; // the main actor has been asked to look
    bool m_gaveUp = false;
    std::set<VirtualKey> m_heardPresses;
};

} // namespace talvera
