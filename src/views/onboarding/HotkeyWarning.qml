// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What speaks against the hotkey that is chosen, and where the user can do something about it.
Plane {
    id: warning

    property string text
    property string action ///< what its button says; without it there is none

    signal clicked()

    implicitHeight: Math.max(words.implicitHeight, button.height) + 2 * Theme.spacing
    radius: Theme.radiusMedium
    color: Theme.warnFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        x: Theme.spacingLarge + 2 // in one column with the rows' marks
        anchors.verticalCenter: parent.verticalCenter
        name: "exclamationmark.triangle.fill"
        color: Theme.warn
    }
    Label {
        id: words
        anchors { left: parent.left; leftMargin: 52; rightMargin: Theme.spacing }
        anchors { right: button.visible ? button.left : parent.right; verticalCenter: parent.verticalCenter }
        text: warning.text
        wrapMode: Text.Wrap
    }
    PushButton {
        id: button
        anchors { right: parent.right; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        implicitHeight: 32
        visible: warning.action !== ""
        text: warning.action
        onClicked: warning.clicked()
    }
}
