// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "linux/language/ServerRequest.h"
#include "platform/language/LanguageModelSession.h"

#include <QString>

#include <memory>
#include <optional>

namespace talvera {

class LlamaLanguageModel;

/// One request to the model, which waits for the server first. The model outlives it.
class LlamaSession final : public LanguageModelSession {
public:
    LlamaSession(LlamaLanguageModel& model, QString instructions);
    ~LlamaSession() override;

    void streamResponse(const QString& prompt, Listener listener) override;

    // What the model tells. The listener may destroy the session at each.
    /// The server listens.
    void send();
    /// There will be none.
    void fail();
    /// No server has taken it so far.
    bool isWaiting() const { return m_hasEntered && !m_request; }

private:
    void awaitServer();
    void takeFailure(const LanguageModelError& error);
    void leave();

    LlamaLanguageModel& m_model;
    ChatQuestion m_question;
    std::shared_ptr<Listener> m_listener;
    std::optional<MainActor::TimerId> m_patience;
    std::unique_ptr<ServerRequest> m_request;
    bool m_hasEntered = false;
    bool m_hasTriedAgain = false;
    Lifetime m_lifetime;
};

} // namespace talvera
