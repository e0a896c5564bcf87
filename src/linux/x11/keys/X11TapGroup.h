// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "linux/x11/keys/X11KeyWatch.h"
#include "platform/keyboard/EventTap.h"

#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class KeyEventMailbox;
class X11KeyListener;

/// One tap: what it waits for, and whom it calls.
struct X11Tap {
    EventTap::Callback callback;
    bool isEnabled = false;
    std::optional<KeyInterest> interest;

    bool isWaitingFor(const KeyEvent& event) const;
};

/// The taps on the keyboards of an X session. They share one thread and one set of reserved chords. Main
/// thread only.
class X11TapGroup {
public:
    /// `bound` is how long the main actor may take to answer an event.
    X11TapGroup(MainActor& mainActor, X11Server server, Duration bound);
    X11TapGroup(const X11TapGroup&) = delete;
    X11TapGroup& operator=(const X11TapGroup&) = delete;
    ~X11TapGroup();

    /// A new tap, disabled and waiting for nothing; the first one starts the thread, and so does the next
    /// when that has lost its connection. Null when the session does not let us watch keys.
    std::shared_ptr<X11Tap> add(EventTap::Callback callback);
    void remove(const std::shared_ptr<X11Tap>& tap);

    /// Listens for what the enabled taps wait for; answers for one of them.
    WatchResult listen(const X11Tap* about = nullptr);

    /// Nothing is heard any more.
    bool isBroken() const;

private:
    void deliver(const KeyEvent& event);
    void reportTimeout();

    const X11Server m_server;
    std::shared_ptr<KeyEventMailbox> m_mailbox;
    std::unique_ptr<X11KeyListener> m_listener;
    std::vector<std::shared_ptr<X11Tap>> m_taps; // the oldest first
};

} // namespace talvera
