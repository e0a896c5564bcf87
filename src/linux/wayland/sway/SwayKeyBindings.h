// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/sway/SwayGuard.h"
#include "linux/wayland/sway/SwayIpc.h"
#include "linux/wayland/sway/swayBindings.h"
#include "platform/keyboard/EventTap.h"

#include <vector>

namespace talvera {

class KeyboardLayout;

/// A chord that a tap waits for.
struct SwayInterest {
    KeyChord chord;
    bool isHeld = true; ///< its end matters, too

    bool operator==(const SwayInterest&) const = default;
};

/// Has sway keep chords from the applications and tell us of them. Main thread.
class SwayKeyBindings {
public:
    /// `layout` tells what keys write, since most of the user's bindings name these letters. It outlives
    /// this. `socket` is the path of sway's.
    SwayKeyBindings(const QString& socket, KeyboardLayout& layout);
    SwayKeyBindings(const SwayKeyBindings&) = delete;
    SwayKeyBindings& operator=(const SwayKeyBindings&) = delete;
    /// The keys are the applications' again.
    ~SwayKeyBindings();

    /// Binds these and nothing else; the answers are in their order. What the user has bound to something
    /// else stays theirs.
    std::vector<WatchResult> hold(const std::vector<SwayInterest>& interests);

    /// Sway has forgotten all bindings that are not in its configuration.
    void forget();

private:
    SwayBindings userBindingsAmong(const SwayBindings& wanted) const;
    bool run(const QByteArray& commands) const;
    void guardHeld();

    const SwayIpc m_sway;
    KeyboardLayout& m_layout;
    SwayGuard m_guard;
    SwayBindings m_held;
};

} // namespace talvera
