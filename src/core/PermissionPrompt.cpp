// SPDX-License-Identifier: MIT
#include "core/PermissionPrompt.h"

#include "persistence/AppSettings.h"
#include "platform/desktop/SessionAccess.h"
#include "platform/sound/MicrophonePermission.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/readiness/ReadinessMonitor.h"

namespace talvera {

namespace {

constexpr Duration adviceTime = seconds(6.0);

}

PermissionPrompt::PermissionPrompt(const Parts& parts)
    : m_parts(parts) {}

bool PermissionPrompt::ensurePermissions() {
    if (m_parts.microphone.status() != AuthorizationStatus::Authorized) {
        ask(Kind::Microphone);
        return false;
    }
    if (!m_parts.access.lacks().empty()) {
        ask(Kind::Accessibility);
        return false;
    }
    return true;
}

void PermissionPrompt::evaluatePermissionHUD() {
    if (!m_parts.settings.hasOnboarded.get())
        return;
    if (m_parts.readiness.isReady()) {
        if (m_parts.hud.currentState().as<DictationHUDState::PermissionRequired>())
            m_parts.hud.hide();
        m_dismissed = false;
        return;
    }
    if (m_dismissed)
        return;
    ask(m_parts.readiness.axTrusted.get() ? Kind::Microphone : Kind::Accessibility);
}

void PermissionPrompt::ask(Kind kind) {
    m_parts.hud.showPermission(kind, m_lifetime.ifAlive([this] { dismiss(); }),
                               m_lifetime.ifAlive([this, kind] { openSettings(kind); }));
}

void PermissionPrompt::dismiss() {
    m_dismissed = true;
    m_parts.hud.hide();
}

void PermissionPrompt::openSettings(Kind kind) {
    const auto advice = kind == Kind::Microphone ? m_parts.readiness.openMicrophoneSettings()
                                                 : m_parts.readiness.openAccessibilitySettings();
    if (advice)
        m_parts.hud.showNotice(*advice, DictationHUDState::NoticeTone::Warn, adviceTime);
    else
        m_parts.hud.hide();
}

} // namespace talvera
