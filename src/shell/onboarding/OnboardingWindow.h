// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/CancellationToken.h"
#include "concurrency/Lifetime.h"
#include "shell/onboarding/WizardWindow.h"

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class MainActor;
class OnboardingController;

/// Owns the wizard's window: it is there from show() until the user closes it or is done. A user who closes
/// it has not finished, and meets the wizard again at the next start. Main thread only.
class OnboardingWindow {
public:
    using Maker = std::function<std::unique_ptr<WizardWindow>()>;

    /// Everything outlives it. `make` is called whenever a window is needed.
    OnboardingWindow(MainActor& actor, OnboardingController& controller, Maker make);
    ~OnboardingWindow();
    OnboardingWindow(const OnboardingWindow&) = delete;
    OnboardingWindow& operator=(const OnboardingWindow&) = delete;

    /// Brings the wizard up, or to the front.
    void show();

    /// Brings the wizard back to the front, where something of the desktop's own was: now, and once more when
    /// that has had the time to go.
    void reactivate();

    bool isOpen() const { return m_window != nullptr; }

private:
    void close();

    MainActor& m_actor;
    OnboardingController& m_controller;
    Maker m_make;
    std::unique_ptr<WizardWindow> m_window;
    std::unique_ptr<WizardWindow> m_closed; ///< until the turn in which it was closed has ended
    std::optional<CancellationToken> m_pendingReactivate;
    Lifetime m_lifetime;
};

} // namespace talvera
