// SPDX-License-Identifier: MIT
import QtQuick

/// Work goes on: an arc that turns.
Item {
    id: badge

    property bool running: false
    property real angle: 0

    width: 28
    height: 28

    NumberAnimation on angle {
        running: badge.running
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
    Symbol {
        anchors.centerIn: parent
        size: 24
        name: "circle.track"
        color: Theme.accent
        opacity: 0.22
    }
    Symbol {
        anchors.centerIn: parent
        size: 24
        name: "circle.arc"
        color: Theme.accent
        rotation: badge.angle
    }
}
