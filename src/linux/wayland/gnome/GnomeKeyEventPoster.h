// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellBus.h"
#include "linux/wayland/gnome/ShellView.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <QVariantList>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace talvera {

/// Writes and pastes in a GNOME session by the Shell's extension. Text comes as from an input method, whole
/// characters and no keys, so neither the layout nor what the user holds has a part in it. Fields that know
/// no input methods, as those of X programs, are pasted into.
class GnomeKeyEventPoster final : public KeyEventPoster {
public:
    GnomeKeyEventPoster(std::shared_ptr<const ShellBus> bus, std::shared_ptr<const ShellView> view);

    /// While the focus is moving it waits up to 0.2 seconds for where it goes.
    TypingTargetPtr focusedTarget() override;

    /// False where the focused field takes no text but by keys. Waits for the Shell's answer, and a moment
    /// longer when the focus has just come: a field tells late that it takes text.
    bool isTypingFaithful(const TypingTargetPtr& target) override;

    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;

    /// The chord is Shift+Insert, as on X11.
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

private:
    class Session;

    PostResult write(const QString& text, const TypingTargetPtr& target);
    PostResult releaseChord();
    /// Has the extension do this in the target's window, and asks again while that is only for the moment not
    /// the focused one.
    PostResult doInTarget(const QString& method, const QVariant& what, const TypingTargetPtr& target);

    const std::shared_ptr<const ShellBus> m_bus;
    const std::shared_ptr<const ShellView> m_view;
    std::optional<std::uint64_t> m_chordDownIn; ///< the window
    std::chrono::steady_clock::time_point m_chordDownSince{};
};

} // namespace talvera
