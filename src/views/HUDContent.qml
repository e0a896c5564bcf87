// SPDX-License-Identifier: MIT
import QtQuick

/// One content of the HUD, which fades in and out.
Item {
    property bool shown: false

    width: implicitWidth
    height: implicitHeight
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutQuad }
    }
}
