// SPDX-License-Identifier: MIT
import QtQuick

/// Work goes on: an arc that turns.
Item {
    id: badge

    property bool running: false

    width: 28
    height: 28

    Cycle {
        id: turn
        running: badge.running
        duration: 900
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
        rotation: turn.value * 360
    }
}
