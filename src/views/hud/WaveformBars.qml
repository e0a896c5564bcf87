// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The voice as a row of bars, drawn up to 30 times a second while it moves.
Item {
    id: bars

    property bool animating: false
    property real level: 0
    property int barCount: 28
    readonly property real barsWidth: canvas.width

    width: 84
    height: 22

    WaveformCanvas {
        id: canvas
        anchors.centerIn: parent
        width: Math.ceil(implicitWidth)
        height: parent.height
        barCount: bars.barCount
        animating: bars.animating
        level: bars.level
        color: Theme.accent
    }
    Frames {
        running: bars.animating
        onTick: canvas.advance(now)
    }
}
