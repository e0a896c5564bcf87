// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyEventPoster.h"

namespace talvera {

/// A session in which programs can't type: no event can be made.
class NoKeyEventPoster final : public KeyEventPoster {
public:
    TypingTargetPtr focusedTarget() override { return std::make_shared<TypingTarget>(); }
    std::unique_ptr<TypingSession> beginTyping(const QStringList&, const TypingTargetPtr&) override {
        return std::make_unique<Session>();
    }
    PostResult postPaste(KeyPhase, const TypingTargetPtr&) override { return PostResult::CutOff; }

private:
    class Session final : public TypingSession {
    public:
        PostResult post(qsizetype, KeyPhase) override { return PostResult::CutOff; }
    };
};

} // namespace talvera
