// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Console.h"

namespace talvera {

/// The wizard's window. Main thread only. There is none yet: it says a plain line instead.
class OnboardingWindow {
public:
    explicit OnboardingWindow(Console& console)
        : m_console(console) {}
    virtual ~OnboardingWindow() = default;

    /// Brings the wizard up, or to the front.
    virtual void show() { m_console.print(QStringLiteral("[onboarding] Talvera is not fully set up yet")); }

private:
    Console& m_console;
};

} // namespace talvera
