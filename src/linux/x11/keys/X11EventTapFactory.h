// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/keyboard/EventTap.h"

#include <memory>
#include <string>
#include <vector>

namespace talvera {

class KeyEventMailbox;
class X11EventTap;
class X11KeyListener;

/// Taps on the keyboards of an X session. They share one thread and one set of reserved chords. The first tap
/// that is created starts them.
///
/// X has no way to ask about a key without letting the keyboard wait for the answer, so the chords that taps
/// wait for are swallowed by the server itself: the first key down, the repeats, of which taps hear nothing,
/// and the key up. What a callback lets pass of them is not delivered.
class X11EventTapFactory final : public EventTapFactory {
public:
    /// `bound` is how long the main actor may take to answer an event. An empty `display` means $DISPLAY.
    /// Must outlive its taps.
    explicit X11EventTapFactory(MainActor& mainActor, Duration bound = seconds(1.0),
                                std::string display = {});
    X11EventTapFactory(const X11EventTapFactory&) = delete;
    X11EventTapFactory& operator=(const X11EventTapFactory&) = delete;
    ~X11EventTapFactory() override;

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;

private:
    friend class X11EventTap;

    /// Listens for what the enabled taps wait for; answers for one of them.
    WatchResult listen(const X11EventTap* about = nullptr);
    void deliver(const KeyEvent& event);
    void tellOfTimeout();

    const std::string m_display;
    std::shared_ptr<KeyEventMailbox> m_mailbox;
    std::unique_ptr<X11KeyListener> m_listener;
    std::vector<X11EventTap*> m_taps; // the oldest first
};

} // namespace talvera
