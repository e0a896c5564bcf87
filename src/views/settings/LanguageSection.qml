// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The language spoken, and the one written.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property LanguageSettings language: settings.language

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle

    SettingsCard {
        SettingsSelect {
            first: true
            leastWidth: 160
            setting: section.language.source
        }
    }
    SettingsCard {
        SettingsSwitch {
            first: true
            setting: section.language.translate
        }
        SettingsSelect {
            indent: Theme.spacingLarge
            leastWidth: 160
            setting: section.language.target
        }
    }
    SettingsCard {
        SettingsRow {
            first: true
            title: section.language.toggleTitle
            subtitle: section.language.toggleSubtitle

            Row {
                spacing: Theme.spacingSmall

                HotkeyRecorder {
                    width: Math.max(180, fieldWidth)
                    invites: false
                    recorder: section.language.toggle
                    label: section.language.toggleTitle
                    absent: section.language.toggleAbsent
                }
                PushButton {
                    compact: true
                    enabled: section.language.hasToggle || section.language.toggle.isRecording
                    text: section.language.toggleClear
                    Accessible.description: section.language.toggleTitle
                    onClicked: {
                        nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason) // this can't be used next
                        section.language.clearToggle()
                    }
                }
            }
        }
    }
}
