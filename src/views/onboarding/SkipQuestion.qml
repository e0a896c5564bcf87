// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Asks a user who goes on without permissions whether they mean it. Nothing else can be used meanwhile.
FocusScope {
    id: question

    required property OnboardingModel wizard

    Accessible.role: Accessible.Dialog
    Accessible.name: wizard.texts.questionTitle
    Accessible.description: wizard.texts.questionMessage
    Keys.onEscapePressed: wizard.dismissQuestion()
    Component.onCompleted: settings.forceActiveFocus(Qt.TabFocusReason)

    Plane {
        anchors.fill: parent
        color: Theme.scrim

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true // nothing below lights up
            acceptedButtons: Qt.AllButtons
            onWheel: wheel => wheel.accepted = true
        }
    }
    Surface {
        anchors.centerIn: parent
        width: 440
        height: content.implicitHeight + 48
        outline: Theme.hairline

        Column {
            id: content
            x: 24
            y: 24
            width: parent.width - 48
            spacing: Theme.spacing

            Row {
                width: parent.width
                spacing: Theme.spacing

                Symbol {
                    id: icon
                    // Beside the first line.
                    y: Math.round((title.contentHeight / Math.max(1, title.lineCount) - height) / 2)
                    name: "exclamationmark.triangle.fill"
                    size: 24
                    color: Theme.warn
                }
                Label {
                    id: title
                    width: parent.width - icon.width - Theme.spacing
                    text: question.wizard.texts.questionTitle
                    font.pixelSize: Theme.sizeLarge
                    strong: true
                    wrapMode: Text.Wrap
                }
            }
            Label {
                width: parent.width
                bottomPadding: Theme.spacingSmall
                text: question.wizard.texts.questionMessage
                color: Theme.textSecondary
                font.pixelSize: Theme.sizeGlance
                lineHeight: 1.2
                wrapMode: Text.Wrap
            }
            PushButton {
                id: settings
                width: parent.width
                primary: true
                text: question.wizard.texts.questionSettings
                KeyNavigation.backtab: cancel
                onClicked: question.wizard.openSettingsInstead()
            }
            PushButton {
                width: parent.width
                text: question.wizard.texts.questionSkip
                onClicked: question.wizard.skipPermissions()
            }
            PushButton {
                id: cancel
                width: parent.width
                quiet: true
                text: question.wizard.texts.questionCancel
                KeyNavigation.tab: settings
                onClicked: question.wizard.dismissQuestion()
            }
        }
    }
}
