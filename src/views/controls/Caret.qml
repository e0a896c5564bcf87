// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Where text is being typed. It blinks while it can be seen.
Plane {
    id: caret

    property bool blinks: false
    property bool lit: true

    implicitWidth: 2
    color: lit ? Theme.accent : "transparent"
    onBlinksChanged: lit = true

    Timer {
        interval: 530
        repeat: true
        running: caret.blinks && caret.visible
        onTriggered: caret.lit = !caret.lit
    }
}
