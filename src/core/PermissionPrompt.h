// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "shell/hud/DictationHUDState.h"

#include <memory>

namespace talvera {

class AppSettings;
class DictationHUDController;
class MicrophonePermission;
class ReadinessMonitor;
class SessionAccess;

/// Asks on the HUD for a permission that is missing: when a press needs it, and proactively when it is lost.
/// Main thread only.
class PermissionPrompt {
public:
    /// What the prompt works with; all of it outlives the prompt.
    struct Parts {
        MicrophonePermission& microphone;
        SessionAccess& access;
        AppSettings& settings;
        ReadinessMonitor& readiness;
        DictationHUDController& hud;
    };

    explicit PermissionPrompt(const Parts& parts);

    /// For a press: whether everything needed is granted; if not, asks for the first that is missing.
    bool ensurePermissions();

    /// Looks at what is granted now, and asks or stops asking. A request that the user has closed stays
    /// closed until everything has been granted.
    void evaluatePermissionHUD();

    bool proactivePermissionHUDDismissed() const { return m_dismissed; }

private:
    using Kind = DictationHUDState::PermissionKind;

    void ask(Kind kind);
    void dismiss();
    void openSettings(Kind kind);

    Parts m_parts;
    bool m_dismissed = false;
    Lifetime m_lifetime;
};

} // namespace talvera
