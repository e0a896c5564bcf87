// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayIpc.h"

#include "linux/wayland/sway/swayMessage.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

#include <utility>

namespace talvera {

namespace {

/// So many bytes, or less when no more come in time.
QByteArray read(QLocalSocket& socket, qsizetype size, const QDeadlineTimer& deadline) {
    while (socket.bytesAvailable() < size &&
           socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
    }
    return socket.read(size);
}

} // namespace

SwayIpc::SwayIpc(QString path, std::chrono::milliseconds limit)
    : m_path(std::move(path))
    , m_limit(limit) {}

std::optional<QByteArray> SwayIpc::ask(Request request, const QByteArray& payload) const {
    const QDeadlineTimer deadline(m_limit);
    QLocalSocket socket;
    socket.connectToServer(m_path);
    if (!socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
        return std::nullopt;
    const auto type = static_cast<std::uint32_t>(request);
    socket.write(SwayMessageHeader{static_cast<std::uint32_t>(payload.size()), type}.bytes() + payload);
    const auto header = SwayMessageHeader::of(read(socket, SwayMessageHeader::size, deadline));
    if (!header || header->type != type)
        return std::nullopt;
    const auto answer = read(socket, header->length, deadline);
    return answer.size() == static_cast<qsizetype>(header->length) ? std::optional(answer) : std::nullopt;
}

bool SwayIpc::run(const QByteArray& command) const {
    const auto answer = ask(Request::RunCommand, command);
    const auto results = answer ? QJsonDocument::fromJson(*answer).array() : QJsonArray();
    bool isDone = !results.isEmpty();
    for (const auto& each : results)
        isDone = isDone && each.toObject().value(QLatin1String("success")).toBool();
    return isDone;
}

} // namespace talvera
