// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What the program is, who may use it, and what a report of a fault should say.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property AboutModel about: settings.about
    readonly property ThirdPartyLicences licences: about.thirdParties
    readonly property bool wantsKeyboard: licences.last >= 0 ///< one comes back from a licence

    function takeKeyboard() {
        rows.itemAt(licences.last).forceActiveFocus(Qt.BacktabFocusReason)
    }

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
                compact: true
                text: section.about.copyText
                Accessible.description: section.about.detailsSubtitle
                onClicked: section.about.copyDetails()
            }
        }
    }
    SettingsCard {
        SettingsRow {
            first: true
            title: section.licences.title
            subtitle: section.licences.subtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: title
            Accessible.description: subtitle
        }
        Repeater {
            id: rows
            model: section.licences.parties

            // qmllint disable unqualified
            MenuRowButton {
                id: row

                required property var modelData
                required property int index

                width: parent?.width ?? 0
                implicitHeight: 40
                leftPadding: Theme.spacingLarge
                rightPadding: Theme.spacingLarge
                text: modelData.name
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.description: modelData.licence
                Accessible.onPressAction: row.clicked()
                onClicked: section.licences.open(index)

                background: Item {
                    RowDivider { }
                    Plane {
                        anchors { fill: parent; margins: 4 }
                        radius: Theme.radiusSmall
                        color: row.pressed ? Theme.fillPressed : row.hovered ? Theme.fillHovered : "transparent"

                        FocusRing {
                            radius: Theme.radiusSmall
                            shown: row.visualFocus
                        }
                    }
                }
                contentItem: Item {
                    implicitHeight: name.implicitHeight

                    Label {
                        id: name
                        anchors { left: parent.left; right: licence.left; rightMargin: Theme.spacing; verticalCenter: parent.verticalCenter }
                        text: row.text
                    }
                    Caption {
                        id: licence
                        anchors { right: mark.left; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
                        text: row.modelData.licence
                    }
                    Symbol {
                        id: mark
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                        name: "chevron.down"
                        size: 14
                        rotation: -90
                        color: Theme.textSecondary
                    }
                }
            }
            // qmllint enable unqualified
        }
    }
}
