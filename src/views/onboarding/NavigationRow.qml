// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The way through the wizard: back, how far, and on.
Item {
    id: row

    required property OnboardingModel wizard
    property alias primary: primary

    implicitHeight: 68

    Plane {
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 1
        color: Theme.separator
    }
    PushButton {
        anchors { left: parent.left; leftMargin: 32; verticalCenter: parent.verticalCenter }
        visible: row.wizard.canGoBack
        quiet: true
        leadingIcon: "arrow.left"
        text: row.wizard.texts.back
        onClicked: row.wizard.back()
    }
    Column {
        anchors.centerIn: parent
        spacing: Theme.spacingSmall

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.spacingLarge
            Accessible.role: Accessible.StaticText
            Accessible.name: row.wizard.stepText

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6

                Repeater {
                    model: row.wizard.stepCount

                    // qmllint disable unqualified
                    ProgressDot {
                        required property int index
                        active: index === row.wizard.step
                        passed: index < row.wizard.step
                    }
                    // qmllint enable unqualified
                }
            }
            Caption {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.wizard.hint === "" // which says more, and takes the room
                text: row.wizard.stepText
            }
        }
        Caption {
            // Between the buttons, the right one of which is the nearer.
            width: 2 * (primary.x - row.width / 2 - Theme.spacingLarge)
            visible: text !== ""
            horizontalAlignment: Text.AlignHCenter
            text: row.wizard.hint
            wrapMode: Text.Wrap
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    PushButton {
        id: primary
        anchors { right: parent.right; rightMargin: 48; verticalCenter: parent.verticalCenter }
        primary: true
        enabled: row.wizard.canGoOn
        trailingIcon: "arrow.right"
        text: row.wizard.primaryText
        Accessible.description: row.wizard.hint !== "" ? row.wizard.hint : row.wizard.stepText
        onClicked: row.wizard.pressPrimary()
        // Where there is nowhere else to go it comes back, and is to be seen.
        Keys.onTabPressed: event => {
            focusReason = Qt.TabFocusReason
            event.accepted = false
        }
    }
}
