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
    Row {
        anchors.centerIn: parent
        visible: row.wizard.hint === ""
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
            text: row.wizard.stepText
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
    Caption {
        anchors { right: primary.left; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        visible: text !== ""
        text: row.wizard.hint
        Accessible.ignored: false
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
