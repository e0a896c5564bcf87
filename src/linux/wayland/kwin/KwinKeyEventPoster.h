// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/KwinKeyboard.h"
#include "linux/wayland/kwin/KwinWindows.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <memory>
#include <optional>

namespace talvera {

/// Pastes in a Plasma session. Nothing is typed there: KWin has keys of the user's own layout alone for
/// programs.
class KwinKeyEventPoster final : public KeyEventPoster {
public:
    KwinKeyEventPoster(std::shared_ptr<KwinKeyboard> keyboard, std::shared_ptr<KwinWindows> windows);

    TypingTargetPtr focusedTarget() override;
    bool isTypingFaithful(const TypingTargetPtr&) override { return false; }

    /// Makes no character.
    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;

    /// The chord is Shift+Insert, as on X11. What the user holds counts for it, so that is let go before.
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

private:
    /// Waits while the keys don't go to the target only for the moment. Answers why nothing may be pressed,
    /// if so.
    std::optional<PostResult> obstacle(const TypingTargetPtr& target) const;

    const std::shared_ptr<KwinKeyboard> m_keyboard;
    const std::shared_ptr<KwinWindows> m_windows;
};

} // namespace talvera
