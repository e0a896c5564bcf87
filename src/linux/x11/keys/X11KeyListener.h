// SPDX-License-Identifier: MIT
#pragma once

#include "linux/keyboard/KeyEventMailbox.h"
#include "linux/x11/keys/X11KeyWatch.h"

#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace talvera {

/// Runs a key watch on a thread of its own, so that a busy main thread never lets the keyboard wait. Events
/// go to a mailbox; when the main thread doesn't empty it, the watch is suspended until the main thread has
/// been told so and says again what to listen for. Sleeps while no key moves. Main thread only.
class X11KeyListener {
public:
    /// Null when the session doesn't let us watch keys.
    static std::unique_ptr<X11KeyListener> start(const X11Server& server,
                                                 std::shared_ptr<KeyEventMailbox> mailbox);
    X11KeyListener(const X11KeyListener&) = delete;
    X11KeyListener& operator=(const X11KeyListener&) = delete;
    ~X11KeyListener();

    /// Hears these and nothing else; the answers are in their order. Everything is Unavailable when the X
    /// server is gone. Waits for the thread, at most a second.
    std::vector<WatchResult> listenFor(const std::vector<KeyInterest>& interests);

    /// The connection to the X server is lost, and the thread has ended with it.
    bool hasEnded() const;

private:
    struct Request {
        std::vector<KeyInterest> interests;
        std::promise<std::vector<WatchResult>> answer;
    };

    using Requests = std::vector<std::shared_ptr<Request>>;

    X11KeyListener(std::unique_ptr<X11KeyWatch> watch, std::shared_ptr<KeyEventMailbox> mailbox, int wakeUp);

    void run();
    /// Nothing when the thread is to end.
    std::optional<Requests> takeRequests();
    void answer(const Requests& requests);
    static void refuse(const Requests& requests);
    void end();
    /// Sleeps until there is something to do.
    void wait();
    void wake();

    std::unique_ptr<X11KeyWatch> m_watch;
    std::shared_ptr<KeyEventMailbox> m_mailbox;
    const int m_wakeUp; // an eventfd, ours

    mutable std::mutex m_mutex; // guards the three below
    Requests m_requests;
    bool m_isEnding = false;
    bool m_hasEnded = false;

    std::thread m_thread;
};

} // namespace talvera
