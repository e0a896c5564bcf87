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
    readonly property bool hasButton: action !== ""
    readonly property real room: width - words.x - Theme.spacingLarge ///< for words and button side by side
    readonly property bool stacks: hasButton && room - Theme.spacingLarge - button.width < 160

    signal acted()

    width: parent?.width ?? 0
    implicitHeight: 2 * Theme.spacing + (stacks ? words.implicitHeight + Theme.spacingSmall + button.height
                  : Math.max(words.implicitHeight, hasButton ? button.height : 0))
    height: implicitHeight
    radius: Theme.radiusMedium
    color: Theme.warnFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        x: Theme.spacingLarge
        y: words.y + Math.round((words.height - height) / 2)
        name: banner.systemIcon
        color: banner.tone
    }
    Label {
        id: words
        x: 44
        y: banner.stacks ? Theme.spacing : Math.round((banner.height - height) / 2)
        width: banner.room - (banner.hasButton && !banner.stacks ? button.width + Theme.spacingLarge : 0)
        text: banner.text
        wrapMode: Text.Wrap
    }
    PushButton {
        id: button
        anchors { right: parent.right; rightMargin: Theme.spacingLarge }
        y: banner.stacks ? words.y + words.height + Theme.spacingSmall : Math.round((banner.height - height) / 2)
        visible: banner.hasButton
        compact: true
        text: banner.action
        onClicked: banner.acted()
    }
}
