// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The key that is held.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property HotkeySettings hotkey: settings.hotkey

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle

    SettingsCard {
        SettingsRow {
            first: true
            title: section.hotkey.currentLabel
            subtitle: section.hotkey.recorderHint

            HotkeyRecorder {
                width: Math.max(240, fieldWidth)
                invites: false
                recorder: section.hotkey.recorder
                label: section.hotkey.currentLabel
            }
        }
    }
    SettingsCard {
        Repeater {
            model: section.hotkey.presets

            // qmllint disable unqualified
            HotkeyPreset {
                required property var modelData
                required property int index

                first: index === 0
                text: modelData.label
                keys: modelData.keys
                badge: modelData.badge
                selected: section.hotkey.selectedId === modelData.id
                onClicked: section.hotkey.choose(modelData.id)
            }
            // qmllint enable unqualified
        }
        HotkeyPreset {
            systemIcon: "square.and.pencil"
            text: section.hotkey.customText
            keys: selected ? section.hotkey.currentKeys : []
            selected: section.hotkey.selectedId === "custom"
            onClicked: section.hotkey.recordCustom()
        }
    }
    SettingsCard {
        SettingsSwitch {
            first: true
            setting: section.hotkey.tapToToggle
        }
    }
    SettingsBanner {
        visible: text !== ""
        text: section.hotkey.fnWarning
        action: section.hotkey.fnSettingsText
        onActed: section.hotkey.openKeyboardSettings()
    }
}
