// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/typing/VirtualKeyboard.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// Types and pastes by a keyboard of our own in the compositor's seat. One for the life of the agent, since the
/// first key of a new one may be lost. Where the compositor has none for programs, no event can be made.
class WaylandKeyEventPoster final : public KeyEventPoster {
public:
    /// Tells which window has the keyboard, by any number that is its own. Any thread.
    using FocusedWindow = std::function<std::optional<std::int64_t>()>;

    WaylandKeyEventPoster(std::unique_ptr<WaylandConnection> connection, FocusedWindow focusedWindow);
    ~WaylandKeyEventPoster() override;

    TypingTargetPtr focusedTarget() override;
    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;

    /// The chord is Shift+Insert, as on X11.
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

private:
    class Session;

    /// Why nothing may be pressed now, if so.
    std::optional<PostResult> obstacle(const TypingTargetPtr& target) const;

    const std::unique_ptr<WaylandConnection> m_connection;
    const FocusedWindow m_focusedWindow;
    std::unique_ptr<VirtualKeyboard> m_keyboard;
};

} // namespace talvera
