// SPDX-License-Identifier: MIT
#include "core/AppDelegate.h"

#include "concurrency/MainActor.h"
#include "core/DictationController.h"
#include "core/PermissionPrompt.h"
#include "core/Warmup.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/Accessibility.h"
#include "platform/desktop/StatusItem.h"
#include "platform/system/ApplicationHost.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"
#include "platform/system/PreferenceStore.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/LaunchAtLogin.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

constexpr Duration bindingNoticeTime = seconds(6.0);
constexpr Duration noTrayNoticeTime = seconds(8.0);

QString installedSuffix(const EventTap* tap) {
    return QStringLiteral(" event tap installed after AX grant (installed=%1).")
        .arg(tap != nullptr ? QStringLiteral("true") : QStringLiteral("false"));
}

} // namespace

AppDelegate::AppDelegate(AgentEnvironment environment)
    : m_env(std::move(environment))
    , m_permissions(std::make_shared<PermissionPrompt>(m_env))
    , m_dictation(std::make_shared<DictationController>(m_env, m_permissions)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    m_env.application.changeCurrentDirectory(m_env.directories.temporary);
    m_env.application.setActivationPolicy(ActivationPolicy::Accessory);
    applyLaunchAtLoginDefault();
    m_env.menuPanel.statusItem.onNoTray = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->sayHowToReachThePanel();
    };
    m_menuPanel.emplace(m_env.menuBar, m_env.settings, m_env.stats, m_env.menuPanel);
    decideOnWizard();
    connectHotkeys();
    m_env.console.print(QStringLiteral("[app] applicationDidFinishLaunching: calling Warmup.primeAll"));
    m_env.warmup.primeAll(m_env.whisper);
    subscribe();
}

/// Once and never again, so that a user who turns it off later is not overruled.
void AppDelegate::applyLaunchAtLoginDefault() {
    const auto applied = QStringLiteral("launchAtLoginDefaultApplied");
    if (m_env.preferences.boolean(applied))
        return;
    try {
        setLaunchAtLogin(m_env.loginItem, true);
    } catch (const PlatformError&) {
        // The user can still turn it on in the settings.
    }
    m_env.preferences.set(applied, true);
}

void AppDelegate::decideOnWizard() {
    if (m_env.settings.hasOnboarded.get() && m_env.models.isReady()) {
        // Asked for its side effect alone: the session gets to know that we will want it.
        m_env.accessibility.isProcessTrusted();
        return;
    }
    m_env.application.setActivationPolicy(ActivationPolicy::Regular);
    m_env.onboardingWindow.show();
}

void AppDelegate::connectHotkeys() {
    const auto weak = weak_from_this();
    m_env.hotkey.onPressStart = [weak] {
        if (const auto self = weak.lock())
            self->m_dictation->handlePressStart();
    };
    m_env.hotkey.onPressEnd = [weak] {
        if (const auto self = weak.lock())
            self->m_dictation->handlePressEnd();
    };
    m_env.hotkey.onBindingRefused = [weak](WatchResult result) {
        if (const auto self = weak.lock())
            self->showBindingRefused(result);
    };
    m_env.hotkey.setBinding(m_env.settings.hotkeyBinding.get());
    m_env.hotkey.install();

    m_env.translateToggle.onTrigger = [weak, &actor = m_env.actor] {
        actor.post([weak] {
            if (const auto self = weak.lock())
                self->toggleTranslation();
        });
    };
    m_env.translateToggle.setBinding(m_env.settings.translateToggleBinding.get());
    m_env.translateToggle.install();
}

/// A hotkey that does nothing must not stay a riddle.
void AppDelegate::showBindingRefused(WatchResult result) {
    const auto text =
        result == WatchResult::ChordTaken
            ? localized("hud.hotkey.taken", "Another program uses your hotkey — choose another one")
            : localized("hud.hotkey.unavailable", "No keyboard here has your hotkey");
    m_env.hud.showNotice(text, DictationHUDState::NoticeTone::Warn, bindingNoticeTime);
}

/// On a desktop without a tray the user sees nothing of us until the first press. Said once for all times,
/// and never into a dictation or over a card.
void AppDelegate::sayHowToReachThePanel() {
    m_env.console.print(QStringLiteral(
        "[app] this desktop has no tray for the Talvera item; starting Talvera again opens its panel"));
    const auto said = QStringLiteral("noTrayHintShown");
    if (m_env.preferences.boolean(said) || !m_env.hud.currentState().as<DictationHUDState::Hidden>())
        return;
    m_env.preferences.set(said, true);
    m_env.hud.showNotice(localized("hud.noTray", "Talvera is running — start it again to open its panel"),
                         DictationHUDState::NoticeTone::Info, noTrayNoticeTime);
}

void AppDelegate::subscribe() {
    auto& settings = m_env.settings;
    auto& actor = m_env.actor;
    // The subscriptions end with this object, so none outlives it.
    m_cancellables.push_back(settings.hasOnboarded.subscribe(actor, [this](bool done) {
        if (!done)
            return;
        m_env.application.setActivationPolicy(ActivationPolicy::Accessory);
        m_env.accessibility.isProcessTrusted(); // as at launch
    }));
    m_cancellables.push_back(settings.hotkeyBinding.subscribe(
        actor, [this](const HotkeyBinding& binding) { m_env.hotkey.setBinding(binding); }));
    m_cancellables.push_back(
        settings.translateToggleBinding.subscribe(actor, [this](const std::optional<HotkeyBinding>& binding) {
            m_env.translateToggle.setBinding(binding);
        }));
    m_cancellables.push_back(
        m_env.readiness.axTrusted.subscribe(actor, [this](bool trusted) { repairEventTaps(trusted); }));

    const auto look = [this](const auto&) { permissionHUDInputsMayHaveChanged(); };
    m_cancellables.push_back(settings.hasOnboarded.observe(look));
    m_cancellables.push_back(m_env.readiness.micStatus.observe(look));
    m_cancellables.push_back(m_env.readiness.axTrusted.observe(look));
    permissionHUDInputsMayHaveChanged();
}

/// A tap can't be created before the session trusts us, and that may come long after the launch.
void AppDelegate::repairEventTaps(bool axTrusted) {
    if (!axTrusted)
        return;
    if (!m_env.hotkey.eventTap()) {
        m_env.hotkey.install();
        m_env.trace(QStringLiteral("Hotkey") + installedSuffix(m_env.hotkey.eventTap()));
    }
    if (!m_env.translateToggle.eventTap()) {
        m_env.translateToggle.install();
        m_env.trace(QStringLiteral("Translate-toggle") + installedSuffix(m_env.translateToggle.eventTap()));
    }
}

AppDelegate::PermissionHUDInputs AppDelegate::permissionHUDInputs() const {
    return {m_env.settings.hasOnboarded.get(), m_env.readiness.micStatus.get(),
            m_env.readiness.axTrusted.get()};
}

void AppDelegate::permissionHUDInputsMayHaveChanged() {
    const auto inputs = permissionHUDInputs();
    if (inputs == m_lastPermissionHUDInputs)
        return;
    m_lastPermissionHUDInputs = inputs;
    if (!inputs.done)
        return;
    m_env.actor.post([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->m_permissions->evaluatePermissionHUD();
    });
}

void AppDelegate::startedAgain() {
    if (m_menuPanel)
        m_menuPanel->open();
}

void AppDelegate::closePanel() {
    if (m_menuPanel)
        m_menuPanel->close();
}

void AppDelegate::toggleTranslation() {
    auto& target = m_env.settings.targetLanguageCode;
    const auto off = QStringLiteral("off");
    target.set(target.get() == off ? m_env.settings.lastTargetLanguageCode.get() : off);
}

} // namespace talvera
