// SPDX-License-Identifier: MIT
#include "core/PermissionPrompt.h"

#include "persistence/AppSettings.h"
#include "platform/desktop/Accessibility.h"
#include "platform/sound/MicrophonePermission.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/readiness/ReadinessMonitor.h"

#include <utility>

namespace talvera {

namespace {

constexpr Duration adviceTime = seconds(6.0);

}

PermissionPrompt::PermissionPrompt(AgentEnvironment environment)
    : m_env(std::move(environment)) {}

bool PermissionPrompt::ensurePermissions() {
    if (m_env.microphone.status() != AuthorizationStatus::Authorized) {
        ask(Kind::Microphone);
        return false;
    }
    if (!m_env.accessibility.isProcessTrusted()) {
        ask(Kind::Accessibility);
        return false;
    }
    return true;
}

void PermissionPrompt::evaluatePermissionHUD() {
    if (!m_env.settings.hasOnboarded.get())
        return;
    if (m_env.readiness.isReady()) {
        if (m_env.hud.currentState().as<DictationHUDState::PermissionRequired>())
            m_env.hud.hide();
        m_dismissed = false;
        return;
    }
    if (m_dismissed)
        return;
    ask(m_env.readiness.axTrusted.get() ? Kind::Microphone : Kind::Accessibility);
}

void PermissionPrompt::ask(Kind kind) {
    const auto weak = weak_from_this();
    m_env.hud.showPermission(
        kind,
        [weak] {
            if (const auto self = weak.lock())
                self->dismiss();
        },
        [weak, kind] {
            if (const auto self = weak.lock())
                self->openSettings(kind);
        });
}

void PermissionPrompt::dismiss() {
    m_dismissed = true;
    m_env.hud.hide();
}

void PermissionPrompt::openSettings(Kind kind) {
    const auto advice = kind == Kind::Microphone ? m_env.readiness.openMicrophoneSettings()
                                                 : m_env.readiness.openAccessibilitySettings();
    if (advice)
        m_env.hud.showNotice(*advice, DictationHUDState::NoticeTone::Warn, adviceTime);
    else
        m_env.hud.hide();
}

} // namespace talvera
