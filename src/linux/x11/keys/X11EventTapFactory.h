// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/keys/X11TapGroup.h"
#include "platform/keyboard/EventTap.h"

#include <memory>

namespace talvera {

/// Taps on the keyboards of an X session.
///
/// X has no way to ask about a key without letting the keyboard wait for the answer, so the chords that taps
/// wait for are swallowed by the server itself: the first key down, the repeats, of which taps hear nothing,
/// and the key up. What a callback lets pass of them is not delivered.
class X11EventTapFactory final : public EventTapFactory {
public:
    /// `bound` is how long the main actor may take to answer an event. Must outlive its taps.
    X11EventTapFactory(MainActor& mainActor, X11Server server, Duration bound = seconds(1.0));

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;

private:
    X11TapGroup m_group;
};

} // namespace talvera
