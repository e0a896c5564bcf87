// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A switch's picture: the knob is where the switch stands.
Plane {
    id: pill

    property bool on: false

    implicitWidth: 36
    implicitHeight: 20
    radius: height / 2
    color: on ? Theme.accent : Theme.fillPressed
    outlineWidth: on ? 0 : 1
    outline: Theme.textSecondary

    Plane {
        width: 12
        height: 12
        radius: 6
        y: 4
        x: pill.on ? pill.width - width - 4 : 4
        color: pill.on ? Theme.textOnAccent : Theme.textSecondary

        Behavior on x { NumberAnimation { duration: Theme.motion / 2; easing.type: Easing.OutCubic } }
    }
}
