// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "linux/language/ChatAnswer.h"
#include "linux/language/EventStreamReader.h"
#include "linux/language/HttpResponseReader.h"
#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QLocalSocket;

namespace talvera {

/// One chat with a model's server on a Unix socket, from the connection to the answer's end. Main thread
/// only; it works from the event loop. Destroying it cancels the request.
class ServerRequest {
public:
    struct Limits {
        Duration silence = seconds(60); ///< without a byte
        Duration whole = seconds(1800); ///< from the first byte sent to the last that comes
        qint64 bytes = 1 << 25;         ///< that come in all
    };
    /// What is asked.
    struct Question {
        QString instructions;
        QString prompt;
    };

    /// `listener` is called as that of a LanguageModelSession.
    ServerRequest(MainActor& actor, Limits limits, LanguageModelSession::Listener listener);
    ~ServerRequest();
    ServerRequest(const ServerRequest&) = delete;
    ServerRequest& operator=(const ServerRequest&) = delete;

    /// Connects and sends; to be called once. Nothing is told from within.
    void begin(const QString& socket, const Question& question);

    /// The connection failed, or ended before a byte of an answer had come.
    bool cameToNothing() const { return m_cameToNothing; }

private:
    struct LaterDeleted {
        void operator()(QLocalSocket* socket) const;
    };

    void connectTo(const QString& socket);
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
    std::unique_ptr<QLocalSocket, LaterDeleted> m_socket;
    QByteArray m_request;
    HttpResponseReader m_response;
    EventStreamReader m_events;
    std::optional<ChatAnswer> m_answer;
    QByteArray m_errorBody;
    QString m_told; ///< the last snapshot
    qint64 m_received = 0;
    std::optional<MainActor::TimerId> m_silence;
    std::optional<MainActor::TimerId> m_whole;
    bool m_hasEnded = false;
    bool m_cameToNothing = false;
    Lifetime m_lifetime;
};

} // namespace talvera
