// SPDX-License-Identifier: MIT
#include "linux/posix/PosixChildProcess.h"

#include "linux/posix/PosixPreparedChild.h"
#include "linux/posix/RunningChild.h"
#include "linux/support/ChildLauncher.h"

#include <system_error>

namespace talvera {

PosixChildProcess::PosixChildProcess(Limits limits)
    : m_limits(limits)
    , m_prepared(std::make_shared<PreparedChildren>()) {}

void PosixChildProcess::endAll() {
    m_prepared->endAll();
}

ChildProcessResult PosixChildProcess::run(const ChildProcessRequest& request) {
    RunningChild child(launchChild(request));
    const auto ending = child.awaitEnd(m_limits, {m_prepared->ending()});
    return child.result(ending);
}

std::unique_ptr<PreparedChild> PosixChildProcess::prepare(const ChildProcessRequest& request) {
    try {
        return std::make_unique<PosixPreparedChild>(*m_prepared, request, m_limits);
    } catch (const std::system_error&) {
        return nullptr;
    }
}

} // namespace talvera
