// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One line of the panel that does something.
MenuRowButton {
    id: item

    property string systemIcon
    property string label
    property string shortcut
    property bool muted: false
    property bool busy: false ///< what it does goes on

    text: label

    contentItem: Item {
        implicitWidth: Theme.iconColumn + words.implicitWidth + Theme.spacingSmall + keys.implicitWidth
        implicitHeight: 24

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: !item.busy
            name: item.systemIcon
            color: Theme.textSecondary
        }
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: item.busy
            size: 16
        }
        Label {
            id: words
            anchors { left: parent.left; leftMargin: Theme.iconColumn; right: keys.left; rightMargin: Theme.spacingSmall }
            anchors.verticalCenter: parent.verticalCenter
            text: item.label
            color: item.muted ? Theme.textSecondary : Theme.text
        }
        Caption {
            id: keys
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            text: item.shortcut
        }
    }
}
