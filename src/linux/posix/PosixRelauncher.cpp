// SPDX-License-Identifier: MIT
#include "linux/posix/PosixRelauncher.h"

#include "platform/system/PlatformError.h"

#include <QFileInfo>
#include <QProcess>

#include <cerrno>
#include <utility>

namespace talvera {

namespace {

/// $0 is the program, $1 the process. A second start beside a running program would only bring that one's
/// panel up, so it waits for the old one, though not for ever: ten seconds after the half one it gives up.
constexpr auto* script = R"(sleep 0.5
tries=0
while kill -0 "$1" 2>/dev/null && [ "$tries" -lt 100 ]; do
    sleep 0.1
    tries=$((tries + 1))
done
exec "$0")";

} // namespace

PosixRelauncher::PosixRelauncher(QString program, QString workingDirectory, pid_t awaited)
    : m_program(std::move(program))
    , m_workingDirectory(std::move(workingDirectory))
    , m_awaited(awaited) {}

void PosixRelauncher::startAgainAfterOurEnd() {
    const auto shell = QStringLiteral("/bin/sh");
    const bool started =
        QFileInfo(m_program).isExecutable() &&
        QProcess::startDetached(
            shell, {QStringLiteral("-c"), QString::fromLatin1(script), m_program, QString::number(m_awaited)},
            m_workingDirectory);
    if (!started)
        throw PlatformError(QStringLiteral("Relauncher"), ENOENT,
                            QStringLiteral("%1 can't be started again").arg(m_program));
}

} // namespace talvera
