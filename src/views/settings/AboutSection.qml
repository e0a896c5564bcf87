// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What the program is, who may use it, and what a report of a fault should say.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property AboutModel about: settings.about

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle

    SettingsCard {
        SettingsRow {
            first: true
            title: section.about.version
            subtitle: section.about.licence
            Accessible.role: Accessible.StaticText
            Accessible.name: title
            Accessible.description: subtitle
        }
        SettingsRow {
            title: section.about.detailsTitle
            subtitle: section.about.copyResult !== "" ? section.about.copyResult : section.about.detailsSubtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: section.about.copyResult !== "" ? section.about.copyResult : title

            PushButton {
                implicitHeight: 32
                text: section.about.copyText
                Accessible.description: section.about.detailsSubtitle
                onClicked: section.about.copyDetails()
            }
        }
    }
    SettingsCard {
        SettingsRow {
            first: true
            title: section.about.thirdPartyTitle
            Accessible.role: Accessible.StaticText
            Accessible.name: title
        }
        Repeater {
            model: section.about.thirdParties

            // qmllint disable unqualified
            Item {
                id: party

                required property var modelData

                width: parent?.width ?? 0
                height: 28
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.name + ", " + modelData.licence

                Label {
                    anchors { left: parent.left; leftMargin: Theme.spacingLarge; right: licence.left; rightMargin: Theme.spacing }
                    text: party.modelData.name
                }
                Caption {
                    id: licence
                    anchors { right: parent.right; rightMargin: Theme.spacingLarge }
                    text: party.modelData.licence
                }
            }
            // qmllint enable unqualified
        }
        Item { width: 1; height: Theme.spacing } // as below the other rows
    }
}
