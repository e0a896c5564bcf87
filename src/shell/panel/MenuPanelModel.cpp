// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelModel.h"

#include "hotkeys/TranslateToggleHotkey.h"
#include "persistence/AppSettings.h"
#include "persistence/StatsStore.h"
#include "shell/panel/MenuPanelStatus.h"
#include "shell/panel/durationText.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

namespace talvera {

MenuPanelModel::MenuPanelModel(Parts parts)
    : m_parts(parts)
    , m_targetLanguages(parts.settings, parts.readiness, parts.languageModel)
    , m_aiCleanup({m_texts.cleanupTitle, m_texts.cleanupSubtitle}, bound(parts.settings.aiCleanupEnabled)) {
    follow();
}

void MenuPanelModel::follow() {
    const auto tell = [this](void (MenuPanelModel::*signal)()) {
        return [this, signal](const auto&) { Q_EMIT(this->*signal)(); };
    };
    auto& [menuBar, settings, stats, readiness, languageModel, layout, toggle] = m_parts;
    const auto status = tell(&MenuPanelModel::statusChanged);
    m_cancellables.push_back(menuBar.state.observe(status));
    m_cancellables.push_back(menuBar.lastErrorMessage.observe(status));
    m_cancellables.push_back(settings.hotkeyBinding.observe(status));
    m_cancellables.push_back(settings.hotkeyTapToToggle.observe(status));
    const auto toggleTells = tell(&MenuPanelModel::toggleShortcutChanged);
    m_cancellables.push_back(settings.translateToggleBinding.observe(toggleTells));
    m_cancellables.push_back(toggle.watchResult().observe(toggleTells));
    const auto languageModelTells = tell(&MenuPanelModel::languageModelChanged);
    m_cancellables.push_back(settings.aiCleanupEnabled.observe(languageModelTells));
    m_cancellables.push_back(stats.lastWeekStats.observe(tell(&MenuPanelModel::statsChanged)));
    for (const auto signal : {&MenuPanelModel::readinessChanged, &MenuPanelModel::statusChanged}) {
        m_cancellables.push_back(readiness.micStatus.observe(tell(signal)));
        m_cancellables.push_back(readiness.axTrusted.observe(tell(signal)));
    }
    m_cancellables.push_back(readiness.aiState.observe(languageModelTells));
}

bool MenuPanelModel::isReady() const {
    return m_parts.readiness.isReady();
}

QString MenuPanelModel::bannerTitle() const {
    const int missing = m_parts.readiness.missingCount();
    if (missing == 0)
        return {};
    if (missing == 1)
        return localized("menu.readiness.title.single", "Talvera isn't fully set up");
    return counted("menu.readiness.title.multi", "%lld things need your attention", missing);
}

bool MenuPanelModel::microphoneMissing() const {
    return m_parts.readiness.micStatus.get() != AuthorizationStatus::Authorized;
}

bool MenuPanelModel::accessibilityMissing() const {
    return !m_parts.readiness.axTrusted.get();
}

QString MenuPanelModel::state() const {
    return rawValue(m_parts.menuBar.state.get());
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
    return talvera::orbLabel(m_parts.menuBar.state.get(), isReady());
}

QString MenuPanelModel::toggleShortcut() const {
    const auto& binding = m_parts.settings.translateToggleBinding.get();
    return binding && m_parts.translateToggle.acts() ? binding->displayString(m_parts.keyboardLayout)
                                                     : QString();
}

LanguageModelNotes MenuPanelModel::languageModel() const {
    return languageModelNotes(m_parts.readiness.aiState.get(), m_parts.settings.aiCleanupEnabled.get());
}

QString MenuPanelModel::timeSaved() const {
    return durationText(m_parts.stats.lastWeekStats.get().secondsSaved);
}

QString MenuPanelModel::dictations() const {
    return formatted(QStringLiteral("%lld"), m_parts.stats.lastWeekStats.get().count);
}

QString MenuPanelModel::dictationsCaption() const {
    return counted("menu.stats.dictations", "DICTATIONS", m_parts.stats.lastWeekStats.get().count);
}

void MenuPanelModel::followUpdateCheck(Published<bool>& isChecking) {
    const auto take = [this](const bool& checking) {
        m_isCheckingForUpdates = checking;
        Q_EMIT updateCheckChanged();
    };
    take(isChecking.get());
    m_cancellables.push_back(isChecking.observe(take));
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

} // namespace talvera
