// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ProgramActivation.h"

#include <QObject>

namespace talvera {

/// What the toolkit tells of our windows. Needs the application object.
class QtProgramActivation final : public ProgramActivation {
public:
    QtProgramActivation();

    Subscription observe(std::function<void()> activated) override;

private:
    struct Activated {};
    Published<Activated> m_activations;
    QObject m_connection; ///< ends with us, and the toolkit's word to us with it
};

} // namespace talvera
