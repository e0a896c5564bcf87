// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Something the user should know of what is set, with a way to do something about it.
Plane {
    id: banner

    property string systemIcon: "exclamationmark.triangle.fill"
    property string text
    property string action ///< on its button; without any there is none
    property color tone: Theme.warn

    signal acted()

    width: parent?.width ?? 0
    implicitHeight: Math.max(words.implicitHeight, button.visible ? button.height : 0) + 2 * Theme.spacing
    height: implicitHeight
    radius: Theme.radiusMedium
    color: Theme.warnFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        x: Theme.spacingLarge
        anchors.verticalCenter: parent.verticalCenter
        name: banner.systemIcon
        color: banner.tone
    }
    Label {
        id: words
        anchors { left: parent.left; leftMargin: 44; right: button.visible ? button.left : parent.right; rightMargin: Theme.spacingLarge }
        anchors.verticalCenter: parent.verticalCenter
        text: banner.text
        wrapMode: Text.Wrap
    }
    PushButton {
        id: button
        anchors { right: parent.right; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        visible: banner.action !== ""
        compact: true
        text: banner.action
        onClicked: banner.acted()
    }
}
