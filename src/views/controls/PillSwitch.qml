// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A switch's picture: the knob is where the switch stands.
Rectangle {
    id: pill

    property bool on: false

    implicitWidth: 36
    implicitHeight: 20
    radius: height / 2
    color: on ? Theme.accent : Theme.fillPressed
    border { width: on ? 0 : 1; color: Theme.textSecondary }

    Rectangle {
        width: 14
        height: 14
        radius: 7
        y: 3
        x: pill.on ? pill.width - width - 3 : 3
        color: pill.on ? Theme.textOnAccent : Theme.textSecondary

        Behavior on x { NumberAnimation { duration: Theme.motion / 2; easing.type: Easing.OutCubic } }
    }
}
