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
#include "platform/desktop/SessionAccess.h"
#include "platform/desktop/StatusItem.h"
#include "platform/system/ApplicationHost.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"
#include "platform/system/PreferenceStore.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/panel/MenuPanelController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/LaunchAtLogin.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

constexpr Duration bindingNoticeTime = seconds(6.0);
constexpr Duration noTrayNoticeTime = seconds(8.0);
const auto noTrayHintShown = QStringLiteral("noTrayHintShown");

QString installedSuffix(const EventTap* tap) {
    return QStringLiteral(" event tap installed after AX grant (installed=%1).")
        .arg(tap != nullptr ? QStringLiteral("true") : QStringLiteral("false"));
}

bool isRefused(const std::optional<WatchResult>& result) {
    return result && *result != WatchResult::Watching;
}

/// Empty when both keys can be had.
QString refusalText(const std::optional<WatchResult>& hotkey, const std::optional<WatchResult>& toggle) {
    if (isRefused(hotkey) && isRefused(toggle))
        return localized("hud.hotkeys.refused",
                         "Neither your hotkey nor your translation shortcut can be had — choose other ones");
    if (hotkey == WatchResult::ChordTaken)
        return localized("hud.hotkey.taken", "Another program uses your hotkey — choose another one");
    if (hotkey == WatchResult::Unavailable)
        return localized("hud.hotkey.unavailable", "No keyboard here has your hotkey");
    if (hotkey == WatchResult::ChordsOnly)
        return localized("hud.hotkey.chordNeeded",
                         "A key held alone can't be your hotkey here — choose several, such as ⌃⌥Space");
    if (toggle == WatchResult::ChordTaken)
        return localized("hud.toggle.taken",
                         "Another program uses your translation shortcut — choose another one");
    if (toggle == WatchResult::Unavailable)
        return localized("hud.toggle.unavailable", "No keyboard here has your translation shortcut");
    return {};
}

} // namespace

AppDelegate::AppDelegate(Parts parts)
    : m_parts(std::move(parts))
    , m_commandedHotkey(m_parts.actor, m_parts.settings, *m_parts.dictation) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    m_parts.application.changeCurrentDirectory(m_parts.directories.temporary);
    m_parts.application.setActivationPolicy(ActivationPolicy::Accessory);
    applyLaunchAtLoginDefault();
    if (!m_parts.preferences.boolean(noTrayHintShown))
        m_parts.statusItem.onNoTray = m_lifetime.ifAlive([this] { sayHowToReachThePanel(); });
    m_menuPanel = m_parts.makeMenuPanel();
    decideOnWizard();
    connectHotkeys();
    m_parts.console.print(QStringLiteral("[app] applicationDidFinishLaunching: calling Warmup.primeAll"));
    m_parts.warmup.primeAll(m_parts.whisper);
    subscribe();
}

/// Once and never again, so that a user who turns it off later is not overruled.
void AppDelegate::applyLaunchAtLoginDefault() {
    const auto applied = QStringLiteral("launchAtLoginDefaultApplied");
    if (m_parts.preferences.boolean(applied))
        return;
    try {
        setLaunchAtLogin(m_parts.loginItem, true);
    } catch (const PlatformError&) {
        // The user can still turn it on in the settings.
    }
    m_parts.preferences.set(applied, true);
}

void AppDelegate::decideOnWizard() {
    if (!isWizardDue()) {
        // Asked for its side effect alone: the session gets to know that we will want it.
        m_parts.access.lacks();
        return;
    }
    m_parts.application.setActivationPolicy(ActivationPolicy::Regular);
    m_parts.onboardingWindow.show();
}

bool AppDelegate::isWizardDue() const {
    return !m_parts.settings.hasOnboarded.get() || !m_parts.models.isReady();
}

void AppDelegate::connectHotkeys() {
    m_parts.hotkey.onPressStart = m_lifetime.ifAlive([this] { m_parts.dictation->handlePressStart(); });
    m_parts.hotkey.onPressEnd = m_lifetime.ifAlive([this] { m_parts.dictation->handlePressEnd(); });
    m_parts.hotkey.onOtherKeyWhileHeld =
        m_lifetime.ifAlive([this] { m_parts.dictation->handleOtherKeyWhileHeld(); });
    m_parts.hotkey.onBindingRefused() = m_lifetime.ifAlive([this](WatchResult) { showBindingRefused(); });
    m_parts.hotkey.setBinding(m_parts.settings.hotkeyBinding.get());
    m_parts.hotkey.install();

    m_parts.translateToggle.onTrigger = [&actor = m_parts.actor, toggle = m_lifetime.ifAlive([this] {
        toggleTranslation();
    })] { actor.post(toggle); };
    m_parts.translateToggle.onBindingRefused() =
        m_lifetime.ifAlive([this](WatchResult) { showBindingRefused(); });
    m_parts.translateToggle.setBinding(m_parts.settings.translateToggleBinding.get());
    m_parts.translateToggle.install();
}

/// The user learns why a key of theirs does nothing.
void AppDelegate::showBindingRefused() {
    const auto text =
        refusalText(m_parts.hotkey.watchResult().get(), m_parts.translateToggle.watchResult().get());
    if (!text.isEmpty())
        m_parts.hud.showRemark(text, DictationHUDState::NoticeTone::Warn, bindingNoticeTime);
}

/// On a desktop without a tray the user sees nothing of us until the first press. Said once for all times,
/// and never into a dictation or over a card.
void AppDelegate::sayHowToReachThePanel() {
    m_parts.console.print(QStringLiteral(
        "[app] this desktop has no tray for the Talvera item; starting Talvera again opens its panel"));
    if (!m_parts.hud.currentState().as<DictationHUDState::Hidden>())
        return;
    m_parts.preferences.set(noTrayHintShown, true);
    m_parts.hud.showNotice(localized("hud.noTray", "Talvera is running — start it again to open its panel"),
                           DictationHUDState::NoticeTone::Info, noTrayNoticeTime);
}

void AppDelegate::subscribe() {
    auto& settings = m_parts.settings;
    auto& actor = m_parts.actor;
    // The subscriptions end with this object, so none outlives it.
    m_cancellables.push_back(settings.hasOnboarded.subscribe(actor, [this](bool done) {
        if (!done)
            return;
        m_parts.application.setActivationPolicy(ActivationPolicy::Accessory);
        m_parts.access.lacks(); // as at launch
    }));
    m_cancellables.push_back(settings.hotkeyBinding.subscribe(
        actor, [this](const HotkeyBinding& binding) { m_parts.hotkey.setBinding(binding); }));
    m_cancellables.push_back(
        settings.translateToggleBinding.subscribe(actor, [this](const std::optional<HotkeyBinding>& binding) {
            m_parts.translateToggle.setBinding(binding);
        }));
    // At once: the next key may be the one that is recorded.
    m_cancellables.push_back(m_parts.onboarding.suspendHotkey.observe(
        [this](bool suspended) { m_parts.hotkey.setShortcutIsRecorded(suspended); }));
    m_cancellables.push_back(
        m_parts.readiness.axTrusted.subscribe(actor, [this](bool trusted) { repairEventTaps(trusted); }));

    const auto look = [this](const auto&) { permissionHUDInputsMayHaveChanged(); };
    m_cancellables.push_back(settings.hasOnboarded.observe(look));
    m_cancellables.push_back(m_parts.readiness.micStatus.observe(look));
    m_cancellables.push_back(m_parts.readiness.axTrusted.observe(look));
    permissionHUDInputsMayHaveChanged();
}

/// A tap can't be created before the session trusts us, and that may come long after the launch.
void AppDelegate::repairEventTaps(bool axTrusted) {
    if (!axTrusted)
        return;
    if (!m_parts.hotkey.eventTap()) {
        m_parts.hotkey.install();
        m_parts.trace(QStringLiteral("Hotkey") + installedSuffix(m_parts.hotkey.eventTap()));
    }
    if (!m_parts.translateToggle.eventTap()) {
        m_parts.translateToggle.install();
        m_parts.trace(QStringLiteral("Translate-toggle") +
                      installedSuffix(m_parts.translateToggle.eventTap()));
    }
}

AppDelegate::PermissionHUDInputs AppDelegate::permissionHUDInputs() const {
    return {m_parts.settings.hasOnboarded.get(), m_parts.readiness.micStatus.get(),
            m_parts.readiness.axTrusted.get()};
}

void AppDelegate::permissionHUDInputsMayHaveChanged() {
    const auto inputs = permissionHUDInputs();
    if (inputs == m_lastPermissionHUDInputs)
        return;
    m_lastPermissionHUDInputs = inputs;
    if (!inputs.done)
        return;
    m_parts.actor.post(m_lifetime.ifAlive([this] { m_parts.permissions->evaluatePermissionHUD(); }));
}

/// A user who has closed the wizard and starts the program again is looking for it.
void AppDelegate::startedAgain() {
    if (isWizardDue())
        m_parts.onboardingWindow.show();
    else if (m_menuPanel)
        m_menuPanel->open();
}

void AppDelegate::endPressInHand() {
    m_parts.dictation->endPressInHand();
}

void AppDelegate::closePanel() {
    if (m_menuPanel)
        m_menuPanel->close();
}

void AppDelegate::toggleTranslation() {
    auto& target = m_parts.settings.targetLanguageCode;
    const auto off = QStringLiteral("off");
    target.set(target.get() == off ? m_parts.settings.lastTargetLanguageCode.get() : off);
}

} // namespace talvera
