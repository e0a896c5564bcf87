// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A voice as a row of bars.
Item {
    id: bars

    property bool animating: false
    property real level: 0.5
    property alias barCount: canvas.barCount
    property alias color: canvas.color

    implicitWidth: Math.ceil(canvas.implicitWidth)
    implicitHeight: 24

    WaveformCanvas {
        id: canvas
        anchors.centerIn: parent
        width: Math.ceil(implicitWidth)
        height: parent.height
        barCount: 9
        color: Theme.accent
        animating: bars.animating
        level: bars.level
    }
    Frames {
        running: bars.animating && bars.visible
        onTick: canvas.advance(now)
    }
}
