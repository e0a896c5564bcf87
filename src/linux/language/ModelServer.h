// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <cstdint>

namespace talvera {

/// Where a server listens: on a Unix socket, or else on a port of 127.0.0.1, which is this computer and no
/// other.
struct ServerAddress {
    QString socket;
    quint16 port = 0;
};

/// How servers are asked for a chat.
enum class ChatProtocol {
    Completions, ///< "/v1/chat/completions", answered by server-sent events
    Ollama,      ///< "/api/chat", answered by lines of JSON
};

/// A model, and the server that it is asked of.
struct ModelServer {
    ServerAddress address;
    ChatProtocol protocol = ChatProtocol::Completions;
    QString model;            ///< its name there; empty for the only one
    std::int64_t context = 0; ///< how many tokens it shall hold, where a request says that; 0 where not
};

} // namespace talvera
