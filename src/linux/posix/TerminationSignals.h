// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <functional>
#include <memory>

class QSocketNotifier;

namespace talvera {

/// Lets the process end in good order when the session or the user asks it to (SIGTERM, SIGINT, SIGHUP). A
/// second signal of the same kind ends it at once. One in a process; main thread only.
class TerminationSignals {
public:
    /// `asked` is called from the event loop.
    explicit TerminationSignals(std::function<void()> asked);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace talvera
