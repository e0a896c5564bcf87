// SPDX-License-Identifier: MIT
#include "linux/language/chatProtocol.h"

#include "linux/language/serverFailures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace talvera {

namespace {

constexpr int seed = 1; // the same words twice for the same text

QJsonObject message(const char* role, const QString& content) {
    return {{QStringLiteral("role"), QLatin1String(role)}, {QStringLiteral("content"), content}};
}

QByteArray post(const QByteArray& path, const QJsonObject& body) {
    return httpRequest("POST", path, QJsonDocument(body).toJson(QJsonDocument::Compact));
}

/// Our own server is told at its start that it shall not think; one of the user's by the request.
QByteArray completionsRequest(const ModelServer& server, const QJsonArray& messages) {
    QJsonObject body{{QStringLiteral("messages"), messages},
                     {QStringLiteral("stream"), true},
                     {QStringLiteral("seed"), seed}};
    if (!server.model.isEmpty()) {
        body.insert(QStringLiteral("model"), server.model);
        body.insert(QStringLiteral("chat_template_kwargs"),
                    QJsonObject{{QStringLiteral("enable_thinking"), false}});
    }
    return post("/v1/chat/completions", body);
}

/// A text that doesn't fit is to be refused, and neither cut nor forgotten bit by bit.
QByteArray ollamaRequest(const ModelServer& server, const QJsonArray& messages) {
    return post("/api/chat", {{QStringLiteral("model"), server.model},
                              {QStringLiteral("messages"), messages},
                              {QStringLiteral("stream"), true},
                              {QStringLiteral("think"), false},
                              {QStringLiteral("truncate"), false},
                              {QStringLiteral("shift"), false},
                              {QStringLiteral("options"),
                               QJsonObject{{QStringLiteral("seed"), seed},
                                           {QStringLiteral("num_ctx"), qint64{server.context}}}}});
}

bool isSaid(const QJsonValue& error) {
    return !error.isUndefined() && !error.isNull();
}

ChatPiece readCompletionsPiece(const QJsonObject& object) {
    ChatPiece piece;
    if (const auto error = object.value(QStringLiteral("error")); isSaid(error)) {
        piece.failure = failureOfError(error, 0);
        return piece;
    }
    const auto choice = object.value(QStringLiteral("choices")).toArray().at(0).toObject();
    const auto delta = choice.value(QStringLiteral("delta")).toObject();
    piece.text = delta.value(QStringLiteral("content")).toString();
    if (const auto reason = choice.value(QStringLiteral("finish_reason")); reason.isString())
        piece.end = reason.toString();
    return piece;
}

/// Servers that know neither "truncate" nor "shift" tell by their counts that something has been left out.
ChatPiece readOllamaPiece(const QJsonObject& object, std::int64_t context) {
    ChatPiece piece;
    if (const auto error = object.value(QStringLiteral("error")); isSaid(error)) {
        piece.failure = failureOfError(error, 0);
        return piece;
    }
    const auto message = object.value(QStringLiteral("message")).toObject();
    piece.text = message.value(QStringLiteral("content")).toString();
    if (!object.value(QStringLiteral("done")).toBool())
        return piece;
    const auto tokens = object.value(QStringLiteral("prompt_eval_count")).toInteger() +
                        object.value(QStringLiteral("eval_count")).toInteger();
    const bool isCut = context > 0 && tokens >= context;
    piece.end = isCut ? QStringLiteral("length")
                      : object.value(QStringLiteral("done_reason")).toString(QStringLiteral("stop"));
    return piece;
}

} // namespace

QByteArray httpRequest(const QByteArray& method, const QByteArray& path, const QByteArray& json) {
    QByteArray request = method + ' ' + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n";
    if (!json.isEmpty())
        request +=
            "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(json.size()) + "\r\n";
    return request + "\r\n" + json;
}

QByteArray chatRequest(const ModelServer& server, const ChatQuestion& question) {
    const QJsonArray messages{message("system", question.instructions), message("user", question.prompt)};
    return server.protocol == ChatProtocol::Ollama ? ollamaRequest(server, messages)
                                                   : completionsRequest(server, messages);
}

/// A chat in which nothing is said. With another size of the context the model would be loaded once more.
QByteArray loadRequest(const ModelServer& server) {
    return ollamaRequest(server, {});
}

ChatPiece readChatPiece(const ModelServer& server, const QByteArray& event) {
    const auto document = QJsonDocument::fromJson(event);
    if (!document.isObject()) { // also the mark of the end, which comes behind the reason for it
        ChatPiece piece;
        piece.failure = brokenAnswer(QStringLiteral("an event that can't be read"));
        return piece;
    }
    return server.protocol == ChatProtocol::Ollama ? readOllamaPiece(document.object(), server.context)
                                                   : readCompletionsPiece(document.object());
}

} // namespace talvera
