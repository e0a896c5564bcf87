// SPDX-License-Identifier: MIT
#pragma once

#include "RigInput.h"
#include "X11Windows.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/PaintWitness.h"

#include <QString>

#include <sys/types.h>

namespace talvera::bench {

/// The settings of an agent, opened as a second start of the program opens them, looked through and closed.
/// Throws std::runtime_error when they don't come or go.
class SettingsVisit {
public:
    explicit SettingsVisit(pid_t agent)
        : m_agent(agent) {}

    /// Answers how long they take to their first paint.
    PaintWitness::Clock::duration open();
    void showEverySection();
    void close();

private:
    void tell(const QString& purpose);
    void await(bool shown);

    const pid_t m_agent;
    X11DisplayClaim m_second{X11Server()};
    test::RigInput m_keys;
    test::X11Windows m_windows;
    PaintWitness m_paint;
};

} // namespace talvera::bench
