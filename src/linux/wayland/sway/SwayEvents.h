// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

class QLocalSocket;

namespace talvera {

/// Hears what sway tells by itself, on a connection of its own. Main thread, with an event loop.
class SwayEvents {
public:
    enum class Kind : std::uint32_t { Workspace = 0x80000000, Mode = 0x80000002, Binding = 0x80000005 };
    using Receiver = std::function<void(Kind, const QJsonObject&)>;

    /// `path` is that of sway's socket. Null when sway doesn't answer.
    static std::unique_ptr<SwayEvents> hear(const QString& path, Receiver receiver);
    SwayEvents(const SwayEvents&) = delete;
    SwayEvents& operator=(const SwayEvents&) = delete;
    ~SwayEvents();

    /// Sway has gone, and nothing is told any more.
    bool hasEnded() const;

private:
    explicit SwayEvents(Receiver receiver);

    bool subscribe(const QString& path);
    void readEvents();

    std::unique_ptr<QLocalSocket> m_socket;
    Receiver m_receiver;
};

} // namespace talvera
