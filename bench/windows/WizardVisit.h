// SPDX-License-Identifier: MIT
#pragma once

#include "AgentHome.h"
#include "FileServer.h"
#include "RigInput.h"
#include "X11Windows.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/PaintWitness.h"

#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

namespace talvera::bench {

/// A home with the speech model in it, and a server that has it when it is gone: without it the wizard is
/// due.
class ModelHome {
public:
    ModelHome();

    void removeModel() const;
    /// Waits until it has been fetched again. Throws std::runtime_error when it isn't.
    void awaitModel() const;

    test::AgentHome home;

private:
    QTemporaryDir m_data;
    const QString m_model = m_data.filePath("data/Talvera/models/ggml-medium-q5_0.bin");
    test::FileServer m_server{{{"model", TALVERA_MICRO_MODEL}}};
};

/// The wizard of an agent, which a second start of the program brings when it is due, and closed again.
/// Throws std::runtime_error when it doesn't come or go.
class WizardVisit {
public:
    explicit WizardVisit(pid_t agent)
        : m_agent(agent) {}

    /// Answers how long it takes to its first paint.
    PaintWitness::Clock::duration open();
    void close();

private:
    const pid_t m_agent;
    X11DisplayClaim m_second{X11Server()};
    test::RigInput m_keys;
    test::X11Windows m_windows;
    PaintWitness m_paint;
};

} // namespace talvera::bench
