// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/client/Toplevels.h"
#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/typing/TypingKeymap.h"
#include "linux/wayland/typing/VirtualKeyboard.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace talvera {

/// Types and pastes by a keyboard of our own in the compositor's seat, of Wayland and X programs alike. One
/// keyboard for the life of the agent, since programs hear of a new one only some time after it is there.
class WaylandKeyEventPoster final : public KeyEventPoster {
public:
    /// Returns when the X programs have read the keys that were sent so far: they look up what a key writes
    /// only then, in the layout of that moment. Wayland programs get keys and layouts in one order.
    using AwaitReading = std::function<void()>;

    /// At the compositor of that name or path; at the one in $WAYLAND_DISPLAY when it is empty. Null where it
    /// has no keyboard for programs, or doesn't tell them which window has the focus.
    static std::unique_ptr<WaylandKeyEventPoster> open(AwaitReading awaitReading,
                                                       const std::string& display = {});
    ~WaylandKeyEventPoster() override;

    /// While the focus is moving it waits up to 0.2 seconds for where it goes.
    TypingTargetPtr focusedTarget() override;

    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;

    /// The chord is Shift+Insert, as on X11.
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

private:
    class Session;

    WaylandKeyEventPoster(AwaitReading awaitReading, std::unique_ptr<Toplevels> focus,
                          std::unique_ptr<WaylandConnection> connection,
                          std::unique_ptr<VirtualKeyboard> keyboard);

    /// Waits while the keys don't go to the target only for the moment. Answers why nothing may be pressed,
    /// if so.
    std::optional<PostResult> obstacle(const TypingTargetPtr& target);
    PostResult press(std::uint32_t key, const TypingTargetPtr& target);

    /// Gives the first of these characters a key, and as many of the others as there are keys for.
    PostResult makeWritable(std::u32string_view characters);
    PostResult releaseChord();

    const AwaitReading m_awaitReading;
    const std::unique_ptr<Toplevels> m_focus;
    const std::unique_ptr<WaylandConnection> m_connection;
    const std::unique_ptr<VirtualKeyboard> m_keyboard;
    TypingKeymap m_keymap; ///< the keyboard's
    bool m_isChordDown = false;
};

} // namespace talvera
