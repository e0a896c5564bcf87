// SPDX-License-Identifier: MIT
#include "shell/onboarding/HotkeyChoiceModel.h"

#include "hotkeys/HotkeyPresets.h"
#include "persistence/AppSettings.h"
#include "shell/onboarding/OnboardingController.h"
#include "text/Localization.h"

namespace talvera {

namespace {

const QString& customId() {
    static const QString id = QStringLiteral("custom");
    return id;
}

} // namespace

HotkeyChoiceModel::HotkeyChoiceModel(OnboardingController& controller, AppSettings& settings,
                                     KeyboardLayout& layout, HotkeyRecorderModel* recorder)
    : m_controller(controller)
    , m_settings(settings)
    , m_layout(layout)
    , m_recorder(recorder) {
    for (const auto& preset : hotkeyPresets(m_settings.unchosenHotkey))
        m_presets.append(QVariant::fromValue(HotkeyChoice{preset.id, preset.keys, preset.onboardingLabel,
                                                          preset.onboardingDescription, preset.recommended}));
    const auto tell = [this](const auto&) { Q_EMIT changed(); };
    m_cancellables.push_back(m_settings.hotkeyBinding.observe(tell));
    m_cancellables.push_back(m_controller.suspendHotkey.observe(tell));
}

QString HotkeyChoiceModel::title() const {
    return localized("onboarding.hotkey.title", "Choose your push-to-talk key");
}

QString HotkeyChoiceModel::body() const {
    return localized("onboarding.hotkey.body",
                     "Hold it and speak, let go and the text is there. You can change it at any time.");
}

QString HotkeyChoiceModel::recommendedText() const {
    return localized("onboarding.hotkey.preset.recommended", "Recommended");
}

QString HotkeyChoiceModel::selectedId() const {
    for (const auto& preset : hotkeyPresets()) {
        if (preset.binding == m_settings.hotkeyBinding.get())
            return preset.id;
    }
    return customId();
}

void HotkeyChoiceModel::choose(const QString& id) {
    for (const auto& preset : hotkeyPresets()) {
        if (preset.id == id) {
            stopRecording();
            m_settings.hotkeyBinding.set(preset.binding);
        }
    }
}

QString HotkeyChoiceModel::customText() const {
    return selectedId() == customId()
               ? localized("onboarding.hotkey.custom.current", "Custom chord (current)")
               : localized("onboarding.hotkey.custom.record", "Record a custom chord");
}

QString HotkeyChoiceModel::customHint() const {
    return localized("onboarding.hotkey.custom.hint", "Any keys you like, such as Ctrl + Shift + D.");
}

QString HotkeyChoiceModel::customKeys() const {
    return selectedId() == customId() ? m_settings.hotkeyBinding.get().displayString(m_layout) : QString();
}

void HotkeyChoiceModel::stopRecording() {
    if (m_recorder)
        m_recorder->cancel();
}

QString HotkeyChoiceModel::fnWarning() const {
    if (m_settings.hotkeyBinding.get() != HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn))
        return {};
    return localized(
        "onboarding.hotkey.fnWarning.banner",
        "macOS may intercept Fn as Globe (change input source, show emoji). For best results, set "
        "System Settings → Keyboard → 'Press 🌐 key to' → 'Do Nothing'.");
}

QString HotkeyChoiceModel::fnSettingsText() const {
    return localized("settings.hotkey.fnWarning.openSettings", "Open Keyboard Settings");
}

void HotkeyChoiceModel::openKeyboardSettings() {
    if (onKeyboardSettings)
        onKeyboardSettings();
}

} // namespace talvera
