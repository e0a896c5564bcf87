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
    /// What is asked while the user waits for an answer.
    static constexpr std::chrono::milliseconds patience{250};
    /// What decides what can be done in this session at all, and is asked rarely.
    static constexpr std::chrono::milliseconds longPatience{2000};

    /// `path` is that of the socket, as $SWAYSOCK tells it; `limit` is how long an answer may take.
    explicit SwayIpc(QString path, std::chrono::milliseconds limit = patience);

    enum class Request : std::uint32_t {
        RunCommand = 0,
        GetTree = 4,
        GetVersion = 7,
        GetConfig = 9,
        GetBindingState = 12
    };

    /// The answer, in JSON; nothing when sway has gone, or doesn't answer in time.
    std::optional<QByteArray> ask(Request request, const QByteArray& payload = {}) const;

    /// Sway listens there, and answers.
    bool isThere() const { return ask(Request::GetVersion).has_value(); }

    /// Whether sway has done all that it was told.
    bool run(const QByteArray& command) const;

private:
    QString m_path;
    std::chrono::milliseconds m_limit;
};

} // namespace talvera
