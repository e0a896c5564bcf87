// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A permission: what it is good for, and whether it is there.
Surface {
    id: card

    required property var permission ///< a PermissionCard
    readonly property bool granted: permission.state === "granted"

    signal allow()

    implicitHeight: Math.max(badge.height, words.implicitHeight) + 2 * Theme.spacingLarge
    Accessible.role: Accessible.Grouping
    Accessible.name: permission.benefit + ", " + permission.stateText
    Accessible.description: permission.why + " " + permission.cause

    Plane {
        id: badge
        x: 20
        y: Theme.spacingLarge
        width: 44
        height: 44
        radius: 12
        color: card.granted ? Theme.goodFill : Theme.accentFill

        Symbol {
            anchors.centerIn: parent
            name: card.permission.icon
            size: 22
            color: card.granted ? Theme.good : Theme.accent
        }
    }
    Column {
        id: words
        anchors { left: badge.right; leftMargin: Theme.spacingLarge; right: state.left; rightMargin: Theme.spacingLarge }
        y: Theme.spacingLarge
        spacing: 4

        Label {
            width: parent.width
            text: card.permission.benefit
            font.pixelSize: Theme.sizeTitle
            strong: true
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            text: card.permission.why
            color: Theme.textSecondary
            lineHeight: 1.15
            wrapMode: Text.Wrap
        }
        Item {
            width: parent.width
            visible: card.permission.cause !== ""
            implicitHeight: cause.implicitHeight + 4

            Symbol {
                // Beside the first line.
                y: cause.y + Math.round((cause.contentHeight / Math.max(1, cause.lineCount) - height) / 2)
                name: "exclamationmark.triangle.fill"
                size: 14
                color: Theme.warn
            }
            Label {
                id: cause
                x: 20
                y: 4
                width: parent.width - x
                text: card.permission.cause
                color: Theme.warn
                font.weight: Theme.weightMedium
                wrapMode: Text.Wrap
            }
        }
    }
    Item {
        id: state
        anchors { right: parent.right; rightMargin: 20; verticalCenter: parent.verticalCenter }
        width: card.granted ? check.width : action.visible ? action.width : 0
        height: 36

        Row {
            id: check
            anchors.verticalCenter: parent.verticalCenter
            visible: card.granted
            spacing: 6

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "checkmark.circle.fill"
                size: 20
                color: Theme.good
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: card.permission.stateText
                color: Theme.good
                font.weight: Theme.weightStrong
            }
        }
        PushButton {
            id: action
            visible: !card.granted && card.permission.action !== ""
            primary: card.permission.state === "needed"
            text: card.permission.action
            Accessible.description: card.permission.benefit
            onClicked: card.allow()
        }
    }
}
