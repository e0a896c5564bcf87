// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyEventPoster.h"

#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/KeyboardFocus.h"
#include "linux/x11/typing/TargetBarrier.h"
#include "linux/x11/typing/X11Keyboard.h"

#include <memory>

namespace talvera {

class X11Typist;

/// Types and pastes by posting keys to the X server. In a session without one, or on a server that doesn't
/// let us post keys, no event can be made.
class X11KeyEventPoster final : public KeyEventPoster {
public:
    /// Also pays back what a former process of ours has left undone.
    explicit X11KeyEventPoster(const X11Server& server);
    ~X11KeyEventPoster() override;

    void prepare() override;
    TypingTargetPtr focusedTarget() override;
    bool isTypingFaithful(const TypingTargetPtr& target) override;
    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;

    /// The chord is Shift+Insert: every application tried takes it, terminals too, and no layout moves it.
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

private:
    std::unique_ptr<X11Typist> takeTypist();

    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Connection> m_barrierConnection;
    std::unique_ptr<X11Connection> m_focusConnection;
    std::unique_ptr<X11Keyboard> m_keyboard;
    std::unique_ptr<TargetBarrier> m_barrier;
    std::unique_ptr<KeyboardFocus> m_focus;
    std::unique_ptr<X11Typist> m_prepared;
    std::unique_ptr<X11Typist> m_chord; ///< while the paste chord is down
};

} // namespace talvera
