// SPDX-License-Identifier: MIT
#include "shell/hud/HUDModel.h"

#include "persistence/AppSettings.h"

namespace talvera {

HUDModel::HUDModel(StateHolder& holder, AppSettings& settings)
    : m_holder(holder)
    , m_settings(settings)
    , m_card(permissionCardTexts(DictationHUDState::PermissionKind::Microphone)) {
    take(holder.state.get());
    m_subscriptions.push_back(holder.state.observe([this](const DictationHUDState& state) { take(state); }));
    m_subscriptions.push_back(holder.level.observe([this](float) { Q_EMIT levelChanged(); }));
    const auto languagesChange = [this](const QString&) { Q_EMIT languagesChanged(); };
    m_subscriptions.push_back(settings.sourceLanguageCode.observe(languagesChange));
    m_subscriptions.push_back(settings.targetLanguageCode.observe(languagesChange));
    m_subscriptions.push_back(
        settings.hotkeyTapToToggle.observe([this](bool) { Q_EMIT releaseHintChanged(); }));
}

void HUDModel::take(const DictationHUDState& state) {
    m_state = state;
    if (const auto* listening = state.as<DictationHUDState::Listening>())
        m_startedAt =
            std::chrono::duration<double, std::milli>(listening->startedAt.time_since_epoch()).count();
    if (const auto* notice = state.as<DictationHUDState::Notice>())
        m_warns = notice->tone == DictationHUDState::NoticeTone::Warn;
    if (const auto* permission = state.as<DictationHUDState::PermissionRequired>())
        m_card = permissionCardTexts(permission->kind);
    Q_EMIT changed();
}

QString HUDModel::state() const {
    return caseName(m_state);
}

QString HUDModel::lineOf(const DictationHUDState& state) const {
    return hudLine(state, m_settings.hotkeyTapToToggle.get());
}

QString HUDModel::spoken() const {
    if (m_state.as<DictationHUDState::PermissionRequired>())
        return m_card.title;
    return line();
}

QString HUDModel::indicator() const {
    return languageIndicator(m_settings.sourceLanguageCode.get(), m_settings.targetLanguageCode.get());
}

QString HUDModel::noticeSymbol() const {
    return m_warns ? QStringLiteral("exclamationmark.triangle.fill") : QStringLiteral("info.circle.fill");
}

QString HUDModel::recordingTime(double elapsedMilliseconds) const {
    return talvera::recordingTime(seconds(elapsedMilliseconds / 1000));
}

} // namespace talvera
