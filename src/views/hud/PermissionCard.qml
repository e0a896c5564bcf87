// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Asks for a missing permission: all of it is a button, except for the one that closes it.
HUDContent {
    id: card

    required property HUDModel model
    property bool animating
    signal dismiss
    signal openSettings

    contentWidth: 560
    contentHeight: 72

    Item {
        id: button
        anchors.fill: parent

        Accessible.role: Accessible.Button
        Accessible.name: card.model.cardTitle
        Accessible.description: card.model.cardSubtitle
        Accessible.ignored: !card.shown
        Accessible.onPressAction: card.openSettings()

        PulsingWarnBadge {
            id: badge
            x: Theme.spacingLarge
            anchors.verticalCenter: parent.verticalCenter
            running: card.animating
        }
        Symbol {
            id: missing
            anchors { left: badge.right; leftMargin: Theme.spacing; top: words.top }
            size: 16
            name: card.model.cardSymbol
            color: Theme.warn
        }
        Column {
            id: words
            anchors { left: missing.right; leftMargin: 6; right: action.left; rightMargin: Theme.spacing }
            anchors.verticalCenter: parent.verticalCenter
            spacing: dense ? 1 : 2

            /// The title takes two lines, and what is below it as many again.
            readonly property bool dense: titleInOneLine.advanceWidth > width

            TextMetrics {
                id: titleInOneLine
                text: card.model.cardTitle
                font { family: Theme.fontFamily; pixelSize: Theme.sizeGlance; weight: Theme.weightStrong }
            }
            Label {
                width: parent.width
                text: card.model.cardTitle
                font.pixelSize: words.dense ? Theme.sizeBody : Theme.sizeGlance
                strong: true
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
            Caption {
                width: parent.width
                text: card.model.cardSubtitle
                font.pixelSize: words.dense ? Theme.sizeCaps : Theme.sizeSmall
                lineHeight: words.dense ? 1 : 1.1
                wrapMode: Text.Wrap
                maximumLineCount: words.dense ? 2 : 3
            }
        }
        Plane {
            id: action
            anchors.right: parent.right
            anchors.rightMargin: 52
            anchors.verticalCenter: parent.verticalCenter
            width: 4 * Math.ceil(actionText.implicitWidth / 4) + 2 * Theme.spacing
            height: 32
            radius: height / 2
            color: pointer.pressed ? Theme.accentPressed : pointer.containsMouse ? Theme.accentHovered : Theme.accent

            Label {
                id: actionText
                anchors.centerIn: parent
                text: card.model.cardAction
                color: Theme.textOnAccent
                strong: true
            }
        }
        MouseArea {
            id: pointer
            anchors.fill: parent
            enabled: card.shown
            hoverEnabled: card.shown
            cursorShape: Qt.PointingHandCursor
            onClicked: card.openSettings()
        }
    }
    Plane {
        anchors.right: parent.right
        anchors.rightMargin: Theme.spacingLarge
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
        radius: width / 2
        color: closer.pressed ? Theme.fillPressed : closer.containsMouse ? Theme.fillHovered : "transparent"

        Accessible.role: Accessible.Button
        Accessible.name: card.model.cardDismiss
        Accessible.ignored: !card.shown
        Accessible.onPressAction: card.dismiss()

        Symbol {
            anchors.centerIn: parent
            size: 14
            name: "xmark"
            color: Theme.textSecondary
        }
        MouseArea {
            id: closer
            anchors.fill: parent
            anchors.margins: -6
            enabled: card.shown
            hoverEnabled: card.shown
            onClicked: card.dismiss()
        }
        Tip {
            text: card.model.cardDismiss
            above: true
            clearOf: card
        }
    }
}
