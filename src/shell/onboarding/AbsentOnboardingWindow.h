// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Console.h"
#include "shell/onboarding/OnboardingWindow.h"

#include <functional>
#include <utility>

namespace talvera {

/// Stands where the wizard's window will be: says a plain line instead, and leaves the rest to `shown`.
class AbsentOnboardingWindow final : public OnboardingWindow {
public:
    AbsentOnboardingWindow(Console& console, std::function<void()> shown)
        : m_console(console)
        , m_shown(std::move(shown)) {}

    void show() override {
        m_console.print(QStringLiteral("[onboarding] Talvera is not fully set up yet"));
        m_shown();
    }

private:
    Console& m_console;
    std::function<void()> m_shown;
};

} // namespace talvera
