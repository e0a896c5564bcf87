// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

namespace talvera {

class Console;
class DictationHUDController;
class MenuBarController;
class OnboardingController;
class ReadinessMonitor;

/// Prints a line whenever the agent's state changes, for tests and for the search for faults:
///   [trace] menu idle|recording|transcribing|error
///   [trace] hud hidden|listening|transcribing|translating NAME|permissionRequired KIND|notice TEXT TONE
///   [trace] microphone authorized|denied|restricted|notDetermined
///   [trace] accessibility trusted|untrusted
///   [trace] wizard step 0..5
///   [trace] demo idle|recording|transcribing|done|error
/// Only builds with tests have it. It begins with how things stand, and never tells what the user has said.
/// Main thread only.
class StateTrace {
public:
    /// What it follows, and where it prints; all of it outlives it.
    struct Parts {
        Console& console;
        MenuBarController& menuBar;
        DictationHUDController& hud;
        ReadinessMonitor& readiness;
        OnboardingController& onboarding;
    };

    /// $TALVERA_TRACE is 1.
    static bool isWanted();

    explicit StateTrace(const Parts& parts);

private:
    template <typename T>
    void follow(Published<T>& published, QString (*line)(const T&));

    Console& m_console;
    Cancellables m_subscriptions;
};

} // namespace talvera
