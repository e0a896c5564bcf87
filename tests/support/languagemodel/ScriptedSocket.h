// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <functional>
#include <vector>

namespace talvera::test {

/// A server on a Unix socket that reads one request and sends just the bytes that a test says, whatever they
/// are. It works from the test's event loop.
class ScriptedSocket {
public:
    /// What follows the bytes.
    enum class Then {
        Close,
        Reset,     ///< the connection breaks, instead of ending
        Stay,      ///< nothing, and the connection stays
        SendAgain, ///< the last piece, again and again
    };

    ScriptedSocket() {
        m_server.listen(path());
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] { serve(); });
    }

    QString path() const { return m_directory.path() + QStringLiteral("/s"); }

    /// What the next requests get.
    void answer(std::vector<QByteArray> pieces, Then then) {
        m_pieces = std::move(pieces);
        m_then = then;
    }

    /// The head of an answer in events, and one that holds this text.
    static QByteArray head() {
        return "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nTransfer-Encoding: chunked\r\n\r\n";
    }
    static QByteArray chunk(const QByteArray& bytes) {
        return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
    }
    static QByteArray event(const QByteArray& choice) {
        return chunk("data: {\"choices\":[" + choice + "]}\n\n");
    }
    static QByteArray text(const QByteArray& content) {
        return event("{\"delta\":{\"content\":\"" + content + "\"}}");
    }
    static QByteArray reason(const QByteArray& reason) {
        return event("{\"delta\":{},\"finish_reason\":\"" + reason + "\"}");
    }

    int requests = 0; ///< that have been answered
    int disconnections = 0;
    QByteArray request; ///< the last one, as it came

private:
    void serve() {
        auto* const connection = m_server.nextPendingConnection();
        request.clear();
        m_hasAnswered = false;
        QObject::connect(connection, &QLocalSocket::disconnected, connection, [this, connection] {
            ++disconnections;
            connection->deleteLater();
        });
        if (m_then == Then::Reset)
            connection->setReadBufferSize(1); // what isn't read at the end makes it a reset
        QObject::connect(connection, &QLocalSocket::readyRead, connection, [this, connection] {
            if (m_then != Then::Reset)
                request += connection->readAll();
            if (!m_hasAnswered && (m_then == Then::Reset || isWhole()))
                send(connection);
        });
        if (m_then == Then::SendAgain)
            QObject::connect(connection, &QLocalSocket::bytesWritten, connection, [this, connection] {
                if (m_hasAnswered && connection->bytesToWrite() == 0)
                    connection->write(m_pieces.back());
            });
    }

    bool isWhole() const {
        const QByteArray field = "Content-Length: ";
        const auto end = request.indexOf("\r\n\r\n");
        const auto length = request.indexOf(field);
        if (end < 0 || length < 0)
            return false;
        const auto value = request.mid(length + field.size());
        return request.size() - end - 4 >= value.left(value.indexOf('\r')).toInt();
    }

    void send(QLocalSocket* connection) {
        m_hasAnswered = true;
        ++requests;
        for (const auto& piece : m_pieces) {
            connection->write(piece);
            connection->flush();
        }
        if (m_then == Then::Close)
            connection->disconnectFromServer();
        else if (m_then == Then::Reset)
            connection->abort(); // with the request unread
    }

    QTemporaryDir m_directory;
    QLocalServer m_server;
    std::vector<QByteArray> m_pieces;
    Then m_then = Then::Close;
    bool m_hasAnswered = false;
};

} // namespace talvera::test
