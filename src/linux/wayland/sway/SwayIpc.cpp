// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayIpc.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

#include <cstring>
#include <utility>

namespace talvera {

namespace {

constexpr char magic[] = {'i', '3', '-', 'i', 'p', 'c'};
constexpr std::uint32_t longestAnswer = 64U * 1024 * 1024;

/// What stands before the payload, in the byte order of the machine.
struct Header {
    std::uint32_t length = 0;
    std::uint32_t type = 0;

    static constexpr qsizetype size = sizeof magic + 2 * sizeof(std::uint32_t);

    QByteArray bytes() const {
        QByteArray bytes(magic, sizeof magic);
        bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
        bytes.append(reinterpret_cast<const char*>(&type), sizeof type);
        return bytes;
    }
    static std::optional<Header> of(const QByteArray& bytes) {
        if (bytes.size() != size || std::memcmp(bytes.constData(), magic, sizeof magic) != 0)
            return std::nullopt;
        Header header;
        std::memcpy(&header.length, bytes.constData() + sizeof magic, sizeof header.length);
        std::memcpy(&header.type, bytes.constData() + sizeof magic + sizeof header.length,
                    sizeof header.type);
        return header;
    }
};

/// So many bytes, or less when no more come in time.
QByteArray read(QLocalSocket& socket, qsizetype size, const QDeadlineTimer& deadline) {
    while (socket.bytesAvailable() < size &&
           socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
    }
    return socket.read(size);
}

} // namespace

SwayIpc::SwayIpc(QString path)
    : m_path(std::move(path)) {}

std::optional<QByteArray> SwayIpc::ask(Request request, const QByteArray& payload) const {
    const QDeadlineTimer deadline(patience);
    QLocalSocket socket;
    socket.connectToServer(m_path);
    if (!socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
        return std::nullopt;
    const auto type = static_cast<std::uint32_t>(request);
    socket.write(Header{static_cast<std::uint32_t>(payload.size()), type}.bytes() + payload);
    const auto header = Header::of(read(socket, Header::size, deadline));
    if (!header || header->type != type || header->length > longestAnswer)
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
