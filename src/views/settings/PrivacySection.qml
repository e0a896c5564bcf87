// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What leaves this computer.
SettingsSectionBody {
    id: section

    required property SettingsModel settings

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle

    SettingsCard {
        Repeater {
            model: section.settings.privacyClaims

            Item {
                id: claim

                required property string modelData
                required property int index

                width: parent?.width ?? 0
                height: Math.max(44, words.implicitHeight + 2 * Theme.spacing)
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData

                RowDivider { visible: claim.index > 0 }
                Symbol {
                    x: Theme.spacingLarge
                    anchors.verticalCenter: parent.verticalCenter
                    name: "checkmark"
                    color: Theme.good
                }
                Label {
                    id: words
                    x: 48
                    width: parent.width - x - Theme.spacingLarge
                    anchors.verticalCenter: parent.verticalCenter
                    text: claim.modelData
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
