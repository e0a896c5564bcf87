// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayEvents.h"

#include "linux/wayland/sway/SwayIpc.h"
#include "linux/wayland/sway/swayMessage.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QLocalSocket>

#include <optional>
#include <utility>

namespace talvera {

namespace {

constexpr std::uint32_t subscribeRequest = 2;

/// The whole message that has come, with its type; nothing as long as a part of it is missing.
std::optional<std::pair<std::uint32_t, QByteArray>> nextMessage(QLocalSocket& socket) {
    const auto header = SwayMessageHeader::of(socket.peek(SwayMessageHeader::size));
    if (!header || socket.bytesAvailable() < SwayMessageHeader::size + header->length)
        return std::nullopt;
    socket.skip(SwayMessageHeader::size);
    return std::pair(header->type, socket.read(header->length));
}

} // namespace

std::unique_ptr<SwayEvents> SwayEvents::hear(const QString& path, Receiver receiver) {
    std::unique_ptr<SwayEvents> events(new SwayEvents(std::move(receiver)));
    return events->subscribe(path) ? std::move(events) : nullptr;
}

SwayEvents::SwayEvents(Receiver receiver)
    : m_socket(std::make_unique<QLocalSocket>())
    , m_receiver(std::move(receiver)) {}

SwayEvents::~SwayEvents() {
    m_socket->disconnect();
}

bool SwayEvents::hasEnded() const {
    return m_socket->state() != QLocalSocket::ConnectedState;
}

bool SwayEvents::subscribe(const QString& path) {
    const QDeadlineTimer deadline(SwayIpc::longPatience);
    m_socket->connectToServer(path);
    if (!m_socket->waitForConnected(static_cast<int>(deadline.remainingTime())))
        return false;
    const QByteArray wanted = R"(["binding","mode","workspace"])";
    m_socket->write(SwayMessageHeader{static_cast<std::uint32_t>(wanted.size()), subscribeRequest}.bytes() +
                    wanted);
    auto answer = nextMessage(*m_socket);
    while (!answer && m_socket->waitForReadyRead(static_cast<int>(deadline.remainingTime())))
        answer = nextMessage(*m_socket);
    if (!answer || answer->first != subscribeRequest ||
        !QJsonDocument::fromJson(answer->second).object().value(QLatin1String("success")).toBool())
        return false;
    QObject::connect(m_socket.get(), &QLocalSocket::readyRead, m_socket.get(), [this] { readEvents(); });
    if (m_socket->bytesAvailable() > 0) // what has come with the answer isn't announced again
        QMetaObject::invokeMethod(
            m_socket.get(), [this] { readEvents(); }, Qt::QueuedConnection);
    return true;
}

void SwayEvents::readEvents() {
    while (const auto message = nextMessage(*m_socket))
        m_receiver(static_cast<Kind>(message->first), QJsonDocument::fromJson(message->second).object());
    const auto next = m_socket->peek(SwayMessageHeader::size);
    if (next.size() == SwayMessageHeader::size && !SwayMessageHeader::of(next))
        m_socket->abort(); // that isn't sway
}

} // namespace talvera
