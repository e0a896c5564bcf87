// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Console.h"
#include "shell/onboarding/OnboardingWindow.h"

namespace talvera {

/// Stands where the wizard's window will be: says a plain line instead.
class AbsentOnboardingWindow final : public OnboardingWindow {
public:
    explicit AbsentOnboardingWindow(Console& console)
        : m_console(console) {}

    void show() override { m_console.print(QStringLiteral("[onboarding] Talvera is not fully set up yet")); }

private:
    Console& m_console;
};

} // namespace talvera
