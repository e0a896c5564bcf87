// SPDX-License-Identifier: MIT
#include "shell/onboarding/PermissionsModel.h"

#include "shell/onboarding/OnboardingController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

namespace talvera {

namespace {

QString allow() {
    return localized("onboarding.permissions.allow", "Allow");
}

QString openSettings() {
    return localized("onboarding.permissions.denied.openSettings", "Open System Settings");
}

PermissionCard inState(PermissionCard card, const QString& state) {
    card.state = state;
    card.stateText = state == QStringLiteral("granted")
                         ? localized("onboarding.permissions.state.granted", "Granted")
                         : localized("onboarding.permissions.state.missing", "Missing");
    return card;
}

} // namespace

PermissionsModel::PermissionsModel(OnboardingController& controller, ReadinessMonitor& readiness)
    : m_controller(controller)
    , m_readiness(readiness) {
    const auto tell = [this](const auto&) { Q_EMIT changed(); };
    m_cancellables.push_back(m_controller.micStatus.observe(tell));
    m_cancellables.push_back(m_controller.axTrusted.observe(tell));
}

bool PermissionsModel::allSet() const {
    return m_controller.hasPermissions();
}

QString PermissionsModel::pill() const {
    return allSet() ? localized("onboarding.permissions.pill.granted", "Nothing to do here")
                    : localized("onboarding.permissions.pill.v2", "Required — two quick grants");
}

QString PermissionsModel::title() const {
    return allSet() ? localized("onboarding.permissions.title.granted", "Talvera has what it needs")
                    : localized("onboarding.permissions.title.v2", "Give Talvera a few powers");
}

QString PermissionsModel::body() const {
    return allSet() ? localized("onboarding.permissions.body.granted",
                                "This session grants both already. All processing stays on your computer.")
                    : localized("onboarding.permissions.body.v2",
                                "Two quick grants unlock everything. All processing stays on your Mac.");
}

QString PermissionsModel::footer() const {
    return allSet() ? localized("onboarding.permissions.allSet", "All set — you can go on")
                    : localized("onboarding.permissions.skipWarning",
                                "Without these, Talvera can't record or type for you. You can grant them "
                                "later from the menu bar.");
}

PermissionCard PermissionsModel::microphone() const {
    PermissionCard card;
    card.icon = QStringLiteral("mic.fill");
    card.benefit = localized("onboarding.permissions.mic.benefit", "Hear what you say");
    card.why =
        localized("onboarding.permissions.mic.why",
                  "Talvera listens only when you hold your hotkey. Audio stays on your Mac and is deleted "
                  "the moment transcription finishes.");
    card.cause = m_readiness.microphoneLackText();
    switch (m_controller.micStatus.get()) {
    case AuthorizationStatus::Authorized:
        card.cause.clear();
        return inState(card, QStringLiteral("granted"));
    case AuthorizationStatus::NotDetermined:
        card.action = allow();
        return inState(card, QStringLiteral("needed"));
    case AuthorizationStatus::Denied:
    case AuthorizationStatus::Restricted:
        card.action = openSettings();
        return inState(card, QStringLiteral("denied"));
    }
    Q_UNREACHABLE();
}

PermissionCard PermissionsModel::accessibility() const {
    PermissionCard card;
    card.icon = QStringLiteral("cursorarrow.and.square.on.square.dashed");
    card.benefit =
        localized("onboarding.permissions.ax.benefit", "Type into any app and listen for your hotkey");
    card.why =
        localized("onboarding.permissions.ax.why",
                  "Drops your transcribed text exactly where your cursor is — Slack, Mail, Notes, or your "
                  "IDE — and detects your push-to-talk key anywhere on macOS. Talvera never reads what's "
                  "on your screen.");
    if (m_controller.axTrusted.get())
        return inState(card, QStringLiteral("granted"));
    card.cause = m_readiness.accessibilityLackText();
    if (!m_readiness.canAllowAccessibility()) // nothing that the user could click would help
        return inState(card, QStringLiteral("denied"));
    card.action = allow();
    return inState(card, QStringLiteral("needed"));
}

PermissionCard PermissionsModel::missingMicrophone() const {
    auto card = microphone();
    card.benefit = localized("onboarding.demo.missing.mic.title", "Microphone access");
    card.why = localized("onboarding.demo.missing.mic.subtitle",
                         "Needed to capture what you say while you hold the hotkey.");
    return card;
}

PermissionCard PermissionsModel::missingAccessibility() const {
    auto card = accessibility();
    card.benefit = localized("onboarding.demo.missing.ax.title", "Accessibility access");
    card.why = localized("onboarding.demo.missing.ax.subtitle",
                         "Needed so the hotkey works anywhere and your text lands at the cursor.");
    return card;
}

void PermissionsModel::allowMicrophone() {
    if (m_controller.micStatus.get() == AuthorizationStatus::NotDetermined)
        m_controller.requestMicrophone();
    else
        m_controller.openMicrophoneSettings();
}

void PermissionsModel::allowAccessibility() {
    m_controller.openAccessibilitySettings();
}

} // namespace talvera
