// SPDX-License-Identifier: MIT
#pragma once

#include "linux/language/ModelServer.h"
#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace talvera {

/// A request over HTTP, with a body of JSON, or without one for an empty `json`.
QByteArray httpRequest(const QByteArray& method, const QByteArray& path, const QByteArray& json = {});

/// What is said to a model.
struct ChatQuestion {
    QString instructions;
    QString prompt;
};

/// The request that puts this question.
QByteArray chatRequest(const ModelServer& server, const ChatQuestion& question);

/// The request that has the server load the model, where a request can do that.
QByteArray loadRequest(const ModelServer& server);

/// What one event of a chat's answer says.
struct ChatPiece {
    QString text;
    std::optional<QString> end; ///< why it ends with this: "stop", "length", "content_filter" or another
    std::optional<LanguageModelError> failure;
};

ChatPiece readChatPiece(const ModelServer& server, const QByteArray& event);

} // namespace talvera
