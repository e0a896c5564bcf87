// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What the language model does to a transcript, and what there is to say of the model.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property CleanupSettings cleanup: settings.ai

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle
    Component.onCompleted: cleanup.appear()

    SettingsCard {
        SettingsRow {
            first: true
            title: section.cleanup.fillerTitle
            subtitle: section.cleanup.fillerSubtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: title
            Accessible.description: subtitle
        }
        SettingsSelect { setting: section.cleanup.tone }
    }
    SettingsCard {
        SettingsRow {
            first: true
            title: section.cleanup.modelTitle
            subtitle: section.cleanup.modelText
            Accessible.role: Accessible.StaticText
            Accessible.name: title
            Accessible.description: subtitle

            Row {
                spacing: Theme.spacing

                PushButton {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: text !== ""
                    compact: true
                    leadingIcon: "arrow.up.forward.app"
                    text: section.cleanup.openModelSettingsText
                    onClicked: section.cleanup.openModelSettings()
                }
                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    size: 20
                    name: section.cleanup.isModelAvailable ? "checkmark.circle.fill" : "exclamationmark.triangle"
                    color: section.cleanup.isModelAvailable ? Theme.good : Theme.warn
                }
            }
        }
        SettingsSelect {
            leastWidth: 160
            shortens: true
            setting: section.cleanup.models
        }
        SettingsRow {
            visible: section.cleanup.offersToAddModel
            title: section.cleanup.addModelTitle
            subtitle: section.cleanup.addModelSubtitle

            PushButton {
                compact: true
                leadingIcon: "arrow.up.forward.app"
                text: section.cleanup.addModelText
                Accessible.description: section.cleanup.addModelTitle
                onClicked: section.cleanup.openModelSettings()
            }
        }
    }
}
