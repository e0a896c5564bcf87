// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

namespace talvera {

/// Asks sway over its socket. A connection for each question, so that an answer that comes too late is no
/// answer to the next one. Main thread, with an application object; needs no event loop.
class SwayIpc {
public:
    /// `path` is that of the socket, as $SWAYSOCK tells it.
    explicit SwayIpc(QString path);

    enum class Request : std::uint32_t { RunCommand = 0, GetTree = 4 };

    /// The answer, in JSON; nothing when sway has gone, or doesn't answer in time.
    std::optional<QByteArray> ask(Request request, const QByteArray& payload = {}) const;

    /// Whether sway has done all that it was told.
    bool run(const QByteArray& command) const;

    static constexpr std::chrono::milliseconds patience{250};

private:
    QString m_path;
};

} // namespace talvera
