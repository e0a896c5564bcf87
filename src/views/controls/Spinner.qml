// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Work goes on: an arc that turns on its track.
Item {
    id: spinner

    property bool turns: visible
    property int size: 24
    property color color: Theme.accent

    implicitWidth: size
    implicitHeight: size

    Cycle {
        id: turn
        running: spinner.turns
        duration: 900
    }
    Symbol {
        anchors.centerIn: parent
        size: spinner.size
        name: "circle.track"
        color: spinner.color
        opacity: 0.22
    }
    Symbol {
        anchors.centerIn: parent
        size: spinner.size
        name: "circle.arc"
        color: spinner.color
        rotation: turn.value * 360
    }
}
