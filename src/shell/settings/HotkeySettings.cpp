// SPDX-License-Identifier: MIT
#include "shell/settings/HotkeySettings.h"

#include "hotkeys/HotkeyPresets.h"
#include "persistence/AppSettings.h"
#include "shell/settings/TapToToggleRule.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

QString customId() {
    return QStringLiteral("custom");
}

RowText tapToToggleText() {
    return {localized("settings.hotkey.tapToToggle.title", "Tap to toggle"),
            localized("settings.hotkey.tapToToggle.subtitle",
                      "Off: hold the hotkey while you speak. On: tap once to start, tap again to stop.")};
}

} // namespace

HotkeySettings::HotkeySettings(Parts parts)
    : m_parts(std::move(parts))
    , m_tapToToggle(tapToToggleText(), bound(m_parts.settings.hotkeyTapToToggle))
    , m_bindings(m_parts.settings.hotkeyBinding.observe([this](const HotkeyBinding&) { Q_EMIT changed(); })) {
    for (const auto& preset : hotkeyPresets(m_parts.settings.unchosenHotkey)) {
        const auto badge =
            preset.recommended ? localized("settings.hotkey.preset.defaultBadge", "Default") : QString();
        m_presets.append(
            QVariant::fromValue(HotkeyPresetRow{preset.id, preset.keys, preset.settingsLabel, badge}));
    }
    m_tapToToggle.enableWhile(
        [this] { return !isFn(); },
        localized("settings.hotkey.fnWarning.tapToggleDisabled",
                  "Unavailable for Fn — a quick tap always triggers macOS input-source switching."));
    m_tapToToggle.follow(m_parts.settings.hotkeyBinding);
}

bool HotkeySettings::isFn() const {
    return TapToToggleRule::isFn(m_parts.settings.hotkeyBinding.get());
}

QString HotkeySettings::currentLabel() const {
    return localized("settings.hotkey.currentLabel", "Current hotkey");
}

QStringList HotkeySettings::currentKeys() const {
    return m_parts.settings.hotkeyBinding.get().keyCaps(m_parts.layout);
}

QString HotkeySettings::currentText() const {
    return m_parts.settings.hotkeyBinding.get().displayString(m_parts.layout);
}

QString HotkeySettings::recorderHint() const {
    return localized("settings.hotkey.recorderHint",
                     "Click the field and press the keys that you want, such as ⌃⌥Space.");
}

QString HotkeySettings::selectedId() const {
    for (const auto& preset : hotkeyPresets()) {
        if (preset.binding == m_parts.settings.hotkeyBinding.get())
            return preset.id;
    }
    return customId();
}

void HotkeySettings::choose(const QString& id) {
    for (const auto& preset : hotkeyPresets()) {
        if (preset.id == id) {
            m_parts.recorder.cancel();
            m_parts.settings.hotkeyBinding.set(preset.binding);
        }
    }
}

QString HotkeySettings::customText() const {
    return selectedId() == customId()
               ? formatted(localized("settings.hotkey.customActive", "Custom: %@"), currentText())
               : localized("settings.hotkey.customEllipsis", "Custom…");
}

QString HotkeySettings::fnWarning() const {
    if (!isFn())
        return {};
    return localized(
        "settings.hotkey.fnWarning.banner",
        "macOS may intercept Fn as Globe (change input source, show emoji). For best results, set "
        "System Settings → Keyboard → 'Press 🌐 key to' → 'Do Nothing'.");
}

QString HotkeySettings::fnSettingsText() const {
    return localized("settings.hotkey.fnWarning.openSettings", "Open Keyboard Settings");
}

} // namespace talvera
