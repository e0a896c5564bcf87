// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One content of the HUD, which fades in and out.
Item {
    property bool shown: false
    property real contentWidth
    property real contentHeight

    // In the middle of the panel its edges lie between pixels of a screen at 125 or 175 % unless these are multiples
    // of 8.
    implicitWidth: 8 * Math.ceil(contentWidth / 8)
    implicitHeight: 8 * Math.ceil(contentHeight / 8)

    /// What that adds goes to both sides.
    readonly property int inset: Math.floor((implicitWidth - contentWidth) / 2)

    width: implicitWidth
    height: implicitHeight
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutQuad }
    }
}
