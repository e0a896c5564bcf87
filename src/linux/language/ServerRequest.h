// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "linux/language/ChatAnswer.h"
#include "linux/language/EventStreamReader.h"
#include "linux/language/HttpResponseReader.h"
#include "linux/language/ModelServer.h"
#include "linux/language/ServerConnection.h"
#include "linux/language/chatProtocol.h"
#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace talvera {

/// One chat with a model's server, from the connection to the answer's end. Main thread
/// only; it works from the event loop. Destroying it cancels the request.
class ServerRequest {
public:
    struct Limits {
        Duration silence = seconds(60); ///< without a byte
        Duration whole = seconds(1800); ///< from the first byte sent to the last that comes
        qint64 bytes = 1 << 25;         ///< that come in all
    };

    /// `listener` is called as that of a LanguageModelSession.
    ServerRequest(MainActor& actor, Limits limits, LanguageModelSession::Listener listener);
    ~ServerRequest();
    ServerRequest(const ServerRequest&) = delete;
    ServerRequest& operator=(const ServerRequest&) = delete;

    /// Connects and sends; to be called once. Nothing is told from within.
    void begin(const ModelServer& server, const ChatQuestion& question);

    /// The connection failed, or ended before a byte of an answer had come.
    bool cameToNothing() const { return m_cameToNothing; }

    /// The server has taken the connection.
    bool hasBeenReached() const { return m_hasBeenReached; }

private:
    void connectTo(const ServerAddress& address);
    void send();
    void receive();
    void takeBody(const QByteArray& bytes);
    void tellText();
    void takeEndOfConnection();
    void awaitMore();
    void stopTimers();
    void fail(const LanguageModelError& error);
    void end();

    MainActor& m_actor;
    const Limits m_limits;
    const std::shared_ptr<LanguageModelSession::Listener> m_listener;
    std::unique_ptr<ServerConnection> m_connection;
    QByteArray m_request;
    HttpResponseReader m_response;
    std::optional<EventStreamReader> m_events;
    std::optional<ChatAnswer> m_answer;
    QByteArray m_errorBody;
    QString m_told; ///< the last snapshot
    qint64 m_received = 0;
    std::optional<MainActor::TimerId> m_silence;
    std::optional<MainActor::TimerId> m_whole;
    bool m_hasEnded = false;
    bool m_cameToNothing = false;
    bool m_hasBeenReached = false;
    Lifetime m_lifetime;
};

} // namespace talvera
