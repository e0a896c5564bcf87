// SPDX-License-Identifier: MIT
#include "linux/language/ServerConnection.h"

#include <QHostAddress>
#include <QLocalSocket>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace talvera {

template <typename Socket>
void ServerConnection::LaterDeleted::operator()(Socket* socket) const {
    socket->disconnect(); // it may be just now that it tells of something
    socket->abort();
    socket->deleteLater();
}

template <typename Socket>
void ServerConnection::follow(Socket& socket, const Listener& listener) {
    socket.setReadBufferSize(readAhead);
    QObject::connect(&socket, &Socket::connected, &socket, listener.onConnected);
    QObject::connect(&socket, &Socket::readyRead, &socket, listener.onReadable);
    QObject::connect(&socket, &Socket::disconnected, &socket, listener.onEnded);
    QObject::connect(&socket, &Socket::errorOccurred, &socket, [onEnded = listener.onEnded] { onEnded(); });
}

ServerConnection::ServerConnection(const ServerAddress& address, const Listener& listener)
    : m_address(address) {
    if (!m_address.socket.isEmpty()) {
        m_local.reset(new QLocalSocket);
        follow(*m_local, listener);
    } else {
        m_network.reset(new QTcpSocket);
        m_network->setProxy(QNetworkProxy::NoProxy);
        follow(*m_network, listener);
    }
}

ServerConnection::~ServerConnection() = default;

void ServerConnection::open() {
    if (m_local)
        m_local->connectToServer(m_address.socket);
    else
        m_network->connectToHost(QHostAddress(QHostAddress::LocalHost), m_address.port);
}

void ServerConnection::write(const QByteArray& bytes) {
    if (m_local)
        m_local->write(bytes);
    else
        m_network->write(bytes);
}

QByteArray ServerConnection::read() {
    return m_local ? m_local->read(readAhead) : m_network->read(readAhead);
}

} // namespace talvera
