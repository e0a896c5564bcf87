// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One content of the HUD, which fades in and out.
Item {
    property bool shown: false
    property real contentWidth
    property real contentHeight

    // In the middle of the panel its edges lie between pixels unless these are even.
    implicitWidth: 2 * Math.ceil(contentWidth / 2)
    implicitHeight: 2 * Math.ceil(contentHeight / 2)

    width: implicitWidth
    height: implicitHeight
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutQuad }
    }
}
