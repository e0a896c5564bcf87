// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

#include <deque>
#include <list>
#include <optional>

namespace talvera::test {

/// A server of language models on a port of this computer, such as the user may run: Ollama, which no package
/// of Debian's holds, by the protocol that its documentation tells, or llama-server. It works from the test's
/// event loop, and leaves it to who asks to end a connection.
class ScriptedUserServer {
public:
    enum class Kind { Ollama, Llama };
    /// What a chat is answered.
    struct Answer {
        QStringList pieces = {};
        int status = 200;      ///< another one comes without the pieces
        QByteArray error = {}; ///< behind the pieces, as JSON; or the body of that status
        QString reason = QStringLiteral("stop");
    };

    explicit ScriptedUserServer(Kind kind)
        : m_kind(kind) {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { serve(); });
        listen();
    }

    ~ScriptedUserServer() { stop(); }
    ScriptedUserServer(const ScriptedUserServer&) = delete;
    ScriptedUserServer& operator=(const ScriptedUserServer&) = delete;

    /// Begins to serve, on the same port again.
    void listen() {
        if (m_server.isListening())
            return;
        m_server.listen(QHostAddress(QHostAddress::LocalHost), m_port);
        m_port = m_server.serverPort();
    }
    /// Is there no more; what is open breaks off.
    void stop() {
        m_server.close();
        for (const auto& open : std::list<Connection>(m_open))
            open.socket->abort();
    }
    quint16 port() const { return m_port; }

    /// As "/api/tags" or "/v1/models" tells them; by default of one that is called "m".
    QJsonArray models = {model(QStringLiteral("m"))};
    bool isLoading = false;
    std::optional<QByteArray> everyAnswer; ///< to whatever is asked, as it goes over the connection
    std::deque<Answer> answers;            ///< to the next chats
    bool holdsLoads = false;               ///< whoever has a model loaded waits

    quint16 lastPeer = 0;       ///< the port that the last connection came from
    QList<QByteArray> requests; ///< their heads' first lines
    QList<QJsonObject> chats;   ///< that something was said in
    QList<QJsonObject> loads;   ///< that had a model loaded
    bool isIdle() const { return m_open.empty() && !m_server.hasPendingConnections(); }

    static QJsonObject model(const QString& name, const QString& family = {}) {
        return {{"name", name},
                {"id", name},
                {"owned_by", "llamacpp"},
                {"details", QJsonObject{{"family", family}}}};
    }

private:
    struct Connection {
        QTcpSocket* socket = nullptr;
        QByteArray request = {};
        bool isAnswered = false;
    };

    void serve() {
        while (auto* const socket = m_server.nextPendingConnection()) {
            lastPeer = socket->peerPort();
            m_open.push_back({socket});
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this] { answerInOrder(); });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
                m_open.remove_if([socket](const Connection& open) { return open.socket == socket; });
                socket->deleteLater();
                answerInOrder();
            });
        }
    }

    /// As they have come, whichever is readable first.
    void answerInOrder() {
        for (auto& open : m_open) {
            if (open.isAnswered)
                continue;
            open.request += open.socket->readAll();
            if (!isWhole(open.request))
                return;
            open.isAnswered = true;
            open.socket->write(answerTo(open.request));
        }
    }

    static qsizetype bodyAt(const QByteArray& request) {
        const auto end = request.indexOf("\r\n\r\n");
        return end < 0 ? -1 : end + 4;
    }
    static bool isWhole(const QByteArray& request) {
        const QByteArray field = "Content-Length: ";
        const auto body = bodyAt(request);
        const auto length = request.indexOf(field);
        const auto value = request.mid(length + field.size());
        return body >= 0 && (length < 0 || request.size() - body >= value.left(value.indexOf('\r')).toInt());
    }

    QByteArray answerTo(const QByteArray& request) {
        const auto line = request.left(request.indexOf('\r'));
        requests << line;
        if (everyAnswer)
            return *everyAnswer;
        if (isLoading)
            return whole(503,
                         R"({"error":{"message":"Loading model","type":"unavailable_error","code":503}})");
        if (line.startsWith("GET /api/tags ") && m_kind == Kind::Ollama)
            return whole(200, json({{"models", models}}));
        if (line.startsWith("GET /health ") && m_kind == Kind::Llama)
            return whole(200, R"({"status":"ok"})");
        if (line.startsWith("GET /v1/models ") && m_kind == Kind::Llama)
            return whole(200, json({{"object", "list"}, {"data", models}}));
        const QByteArray chat = m_kind == Kind::Ollama ? "POST /api/chat " : "POST /v1/chat/completions ";
        if (line.startsWith(chat))
            return chatAnswer(QJsonDocument::fromJson(request.mid(bodyAt(request))).object());
        return whole(404, R"({"error":"not found"})");
    }

    QByteArray chatAnswer(const QJsonObject& chat) {
        if (chat["messages"].toArray().isEmpty()) {
            loads << chat;
            return holdsLoads ? QByteArray() : streamed(event({}, "load"));
        }
        chats << chat;
        Answer answer;
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        if (answer.status != 200)
            return whole(answer.status, answer.error);
        QByteArray events;
        for (const auto& piece : answer.pieces)
            events += chunk(event(piece, {}));
        if (answer.error.isEmpty())
            events += chunk(event({}, answer.reason));
        else
            events += chunk(m_kind == Kind::Ollama ? answer.error + "\n" : "data: " + answer.error + "\n\n");
        return head() + events + "0\r\n\r\n";
    }

    QByteArray event(const QString& text, const QString& reason) const {
        if (m_kind == Kind::Ollama) {
            QJsonObject line{{"message", QJsonObject{{"role", "assistant"}, {"content", text}}},
                             {"done", !reason.isEmpty()}};
            if (!reason.isEmpty())
                line.insert("done_reason", reason);
            return json(line) + "\n";
        }
        QJsonObject choice{{"delta", QJsonObject{{"content", text}}}};
        if (!reason.isEmpty())
            choice.insert("finish_reason", reason);
        return "data: " + json({{"choices", QJsonArray{choice}}}) + "\n\n";
    }

    static QByteArray head() { return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"; }
    static QByteArray streamed(const QByteArray& event) { return head() + chunk(event) + "0\r\n\r\n"; }
    static QByteArray chunk(const QByteArray& bytes) {
        return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
    }
    static QByteArray json(const QJsonObject& object) {
        return QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    static QByteArray whole(int status, const QByteArray& body) {
        return "HTTP/1.1 " + QByteArray::number(status) +
               " X\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    const Kind m_kind;
    QTcpServer m_server;
    quint16 m_port = 0;
    std::list<Connection> m_open;
};

} // namespace talvera::test
