// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelModel.h"

#include "persistence/AppSettings.h"
#include "persistence/StatsStore.h"
#include "shell/panel/MenuPanelStatus.h"
#include "shell/panel/durationText.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

namespace talvera {

MenuPanelModel::MenuPanelModel(Parts parts)
    : m_parts(parts)
    , m_targetLanguages(parts.settings, parts.readiness, parts.languageModel) {
    follow();
}

void MenuPanelModel::follow() {
    const auto tell = [this](void (MenuPanelModel::*signal)()) {
        return [this, signal](const auto&) { Q_EMIT(this->*signal)(); };
    };
    auto& [menuBar, settings, stats, readiness, languageModel, layout] = m_parts;
    const auto status = tell(&MenuPanelModel::statusChanged);
    m_cancellables.push_back(menuBar.state.observe(status));
    m_cancellables.push_back(menuBar.lastErrorMessage.observe(status));
    m_cancellables.push_back(settings.hotkeyBinding.observe(status));
    m_cancellables.push_back(settings.hotkeyTapToToggle.observe(status));
    m_cancellables.push_back(
        settings.translateToggleBinding.observe(tell(&MenuPanelModel::toggleShortcutChanged)));
    m_cancellables.push_back(settings.aiCleanupEnabled.observe(tell(&MenuPanelModel::cleanupChanged)));
    m_cancellables.push_back(stats.lastWeekStats.observe(tell(&MenuPanelModel::statsChanged)));
    m_cancellables.push_back(readiness.micStatus.observe(tell(&MenuPanelModel::readinessChanged)));
    m_cancellables.push_back(readiness.axTrusted.observe(tell(&MenuPanelModel::readinessChanged)));
    m_cancellables.push_back(readiness.aiState.observe(tell(&MenuPanelModel::languageModelChanged)));
}

QString MenuPanelModel::bannerTitle() const {
    const int missing = m_parts.readiness.missingCount();
    if (missing == 0)
        return {};
    if (missing == 1)
        return localized("menu.readiness.title.single", "Talvera isn't fully set up");
    return formatted(localized("menu.readiness.title.multi", "%lld things need your attention"), missing);
}

bool MenuPanelModel::microphoneMissing() const {
    return m_parts.readiness.micStatus.get() != AuthorizationStatus::Authorized;
}

bool MenuPanelModel::accessibilityMissing() const {
    return !m_parts.readiness.axTrusted.get();
}

QString MenuPanelModel::state() const {
    return caseName(m_parts.menuBar.state.get());
}

QString MenuPanelModel::statusTitle() const {
    return talvera::statusTitle(m_parts.menuBar.state.get());
}

QString MenuPanelModel::statusSubtitle() const {
    return talvera::statusSubtitle(m_parts.menuBar.state.get(), m_parts.menuBar.lastErrorMessage.get(),
                                   m_parts.settings.hotkeyTapToToggle.get());
}

QString MenuPanelModel::statusKeyCap() const {
    return m_parts.menuBar.state.get() == MenuBarController::State::Idle
               ? m_parts.settings.hotkeyBinding.get().displayString(m_parts.keyboardLayout)
               : QString();
}

QString MenuPanelModel::orbLabel() const {
    return talvera::orbLabel(m_parts.menuBar.state.get());
}

QString MenuPanelModel::toggleShortcut() const {
    const auto& binding = m_parts.settings.translateToggleBinding.get();
    return binding ? binding->displayString(m_parts.keyboardLayout) : QString();
}

bool MenuPanelModel::languageModelAvailable() const {
    return m_parts.readiness.aiState.get() == AIAvailabilityState::Available;
}

bool MenuPanelModel::aiCleanupEnabled() const {
    return m_parts.settings.aiCleanupEnabled.get();
}

void MenuPanelModel::setAICleanupEnabled(bool enabled) {
    m_parts.settings.aiCleanupEnabled.set(enabled);
}

QString MenuPanelModel::timeSaved() const {
    return durationText(m_parts.stats.lastWeekStats.get().secondsSaved);
}

QString MenuPanelModel::dictations() const {
    return formatted(QStringLiteral("%lld"), m_parts.stats.lastWeekStats.get().count);
}

void MenuPanelModel::fixMicrophone() {
    advise(m_parts.readiness.openMicrophoneSettings());
}

void MenuPanelModel::fixAccessibility() {
    advise(m_parts.readiness.openAccessibilitySettings());
}

void MenuPanelModel::advise(const std::optional<QString>& advice) {
    if (advice && onAdvice)
        onAdvice(*advice);
}

QVariantMap MenuPanelModel::texts() const {
    const auto usingPattern = localized("menu.aiCleanup.using", "Using %@");
    return {
        {QStringLiteral("fix"), localized("menu.readiness.fix", "Fix")},
        {QStringLiteral("allowMicrophone"), localized("menu.readiness.mic", "Allow Microphone")},
        {QStringLiteral("allowAccessibility"), localized("menu.readiness.ax", "Allow Accessibility")},
        {QStringLiteral("translateTo"), localized("menu.translateTo", "Translate to")},
        {QStringLiteral("searchLanguages"), localized("menu.language.search", "Search languages")},
        {QStringLiteral("noLanguage"), localized("menu.language.noMatch", "No such language")},
        {QStringLiteral("addMoreLanguages"),
         localized("menu.language.footer.addMore", "Add more languages in System Settings")},
        {QStringLiteral("aiOff"),
         localized("menu.aiOff.openSettings", "Apple Intelligence is off — open System Settings")},
        {QStringLiteral("aiOffHint"),
         localized("menu.aiOff.hint",
                   "Apple Intelligence requires Mac and Siri to use the same language. Match them in System "
                   "Settings → Apple Intelligence & Siri → Language.")},
        {QStringLiteral("cleanupTitle"), localized("menu.aiCleanup.title", "AI Cleanup")},
        {QStringLiteral("cleanupSubtitle"),
         localized("menu.aiCleanup.subtitle",
                   "For stutter-heavy speech — leave off if Whisper output already looks clean")},
        {QStringLiteral("cleanupUsing"),
         formatted(usingPattern, localized("menu.aiCleanup.model", "Apple Intelligence"))},
        {QStringLiteral("thisWeek"), localized("menu.stats.thisWeek", "THIS WEEK")},
        {QStringLiteral("dictations"), localized("menu.stats.dictations", "DICTATIONS")},
        {QStringLiteral("settings"), localized("menu.settings", "Settings…")},
        {QStringLiteral("settingsShortcut"), localized("menu.settings.shortcut", "⌘,")},
        {QStringLiteral("checkForUpdates"), localized("menu.checkForUpdates", "Check for Updates…")},
        {QStringLiteral("quit"), localized("menu.quit", "Quit Talvera")},
        {QStringLiteral("quitShortcut"), localized("menu.quit.shortcut", "⌘Q")},
    };
}

} // namespace talvera
