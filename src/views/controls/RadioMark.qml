// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One of several: chosen or not.
Plane {
    id: mark

    property bool on: false

    implicitWidth: 20
    implicitHeight: 20
    radius: 10
    color: on ? Theme.accent : "transparent"
    outlineWidth: on ? 0 : 1
    outline: Theme.textSecondary

    Plane {
        anchors.fill: parent
        anchors.margins: Math.round(6 * Screen.devicePixelRatio) / Screen.devicePixelRatio // as wide on all sides
        radius: width / 2
        visible: mark.on
        color: Theme.textOnAccent
    }
}
