// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Relauncher.h"

#include <QString>

#include <sys/types.h>

namespace talvera {

/// Leaves a shell behind that waits for our end.
class PosixRelauncher final : public Relauncher {
public:
    /// Starts `program` in `workingDirectory` once the process `awaited` has ended.
    PosixRelauncher(QString program, QString workingDirectory, pid_t awaited);

    void startAgainAfterOurEnd() override;

private:
    QString m_program;
    QString m_workingDirectory;
    pid_t m_awaited;
};

} // namespace talvera
