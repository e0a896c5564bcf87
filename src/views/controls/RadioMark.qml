// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One of several: chosen or not.
Plane {
    property bool on: false

    implicitWidth: 20
    implicitHeight: 20
    radius: 10
    color: on ? Theme.accent : "transparent"
    outlineWidth: on ? 0 : 1
    outline: Theme.textSecondary

    Plane {
        anchors.centerIn: parent
        width: 8
        height: 8
        radius: 4
        visible: parent.on
        color: Theme.textOnAccent
    }
}
