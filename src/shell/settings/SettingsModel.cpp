// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsModel.h"

#include "text/Localization.h"

namespace talvera {

namespace {

SettingsSection describe(SettingsSectionID section) {
    const auto id = rawValue(section);
    switch (section) {
    case SettingsSectionID::General:
        return {id, QStringLiteral("gearshape"), localized("settings.sidebar.general", "General"),
                localized("settings.general.subtitle", "Core behavior and startup options.")};
    case SettingsSectionID::Hotkey:
        return {id, QStringLiteral("keyboard"), localized("settings.sidebar.hotkey", "Hotkey"),
                localized("settings.hotkey.subtitle",
                          "Press and hold to record. Release to transcribe and paste.")};
    case SettingsSectionID::Language:
        return {
            id, QStringLiteral("globe"), localized("settings.sidebar.language", "Language"),
            localized("settings.language.subtitle", "What language you're speaking, and how to output it.")};
    case SettingsSectionID::Ai:
        return {id, QStringLiteral("wand.and.sparkles"),
                localized("settings.sidebar.aiCleanup", "AI cleanup"),
                localized("settings.aiCleanup.subtitle", "Make transcripts send-ready automatically.")};
    case SettingsSectionID::Privacy:
        return {id, QStringLiteral("lock.fill"), localized("settings.sidebar.privacy", "Privacy"),
                localized("settings.privacy.subtitle", "What leaves your Mac (spoiler: nothing).")};
    }
    Q_UNREACHABLE();
}

} // namespace

SettingsModel::SettingsModel(const Parts& parts)
    : m_general(parts.general)
    , m_hotkey(parts.hotkey)
    , m_language(parts.general.settings, parts.toggleRecorder)
    , m_cleanup(parts.cleanup)
    , m_about(parts.about) {}

QString SettingsModel::windowTitle() const {
    return localized("settings.window.title", "Talvera Settings");
}

QVariantList SettingsModel::sections() const {
    QVariantList list;
    for (const auto section : allCases<SettingsSectionID>())
        list.append(QVariant::fromValue(describe(section)));
    return list;
}

QString SettingsModel::section() const {
    return m_section ? rawValue(*m_section) : QString();
}

QString SettingsModel::sectionTitle() const {
    return m_section ? describe(*m_section).title : m_about.title();
}

QString SettingsModel::sectionSubtitle() const {
    return m_section ? describe(*m_section).subtitle : m_about.subtitle();
}

void SettingsModel::select(SettingsSectionID section) {
    show(section);
}

void SettingsModel::select(const QString& name) {
    if (const auto section = fromRawValue<SettingsSectionID>(name))
        show(*section);
}

void SettingsModel::selectAbout() {
    show(std::nullopt);
}

void SettingsModel::show(std::optional<SettingsSectionID> section) {
    if (m_section == section) {
        m_about.thirdParties()->forget(); // back to what is shown first
        return;
    }
    m_section = section;
    m_hotkey.recorder()->cancel();
    m_language.toggle()->cancel();
    m_about.forget();
    Q_EMIT sectionChanged();
}

QStringList SettingsModel::privacyClaims() const {
    return {
        localized("settings.privacy.claim.audio", "Audio is never uploaded. It’s processed on-device."),
        localized("settings.privacy.claim.transcripts", "Transcripts stay on your Mac. We don’t see them."),
        localized("settings.privacy.claim.analytics", "No analytics, no accounts required.")};
}

} // namespace talvera
