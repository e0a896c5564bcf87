// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "linux/language/ModelServer.h"
#include "linux/language/ServerRequest.h"
#include "platform/language/LanguageModelSession.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// One request to a server that the user runs. What it is made with outlives it.
class ServedSession final : public LanguageModelSession {
public:
    struct Parts {
        MainActor& actor;
        ServerRequest::Limits limits;
        ModelServer server;
        /// Why it can't be asked now; nothing when it can. An unasked server isn't told anything.
        std::function<std::optional<LanguageModelError>()> refusal;
        /// The request has failed, so that the server may not be what it was.
        std::function<void()> onFailure;
    };

    ServedSession(Parts parts, QString instructions);

    void streamResponse(const QString& prompt, Listener listener) override;

private:
    void ask();
    void takeFailure(const LanguageModelError& error);

    const Parts m_parts;
    ChatQuestion m_question;
    std::shared_ptr<Listener> m_listener;
    std::unique_ptr<ServerRequest> m_request;
    Lifetime m_lifetime;
};

} // namespace talvera
