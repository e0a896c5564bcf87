// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// How far a download is.
Item {
    id: ring

    property real progress: 0
    property string phase
    property string percentText
    property bool moves: false
    readonly property bool isDone: phase === "done"
    readonly property bool isFailed: phase === "failed"
    readonly property bool works: phase === "verifying" || phase === "extracting"

    implicitWidth: 128
    implicitHeight: 128

    ProgressArc {
        anchors.fill: parent
        thickness: 9
        track: ring.isDone ? Theme.goodFill : ring.isFailed ? Theme.badFill : Theme.fill
        color: ring.isDone ? Theme.good : ring.isFailed ? Theme.bad : Theme.accent
        progress: ring.isDone ? 1 : ring.works ? 0.25 : ring.isFailed ? 0 : ring.progress
        start: ring.works ? turn.value * 360 : 0
    }
    Cycle {
        id: turn
        running: ring.moves && ring.works
        duration: 1100
    }
    Label {
        anchors.centerIn: parent
        visible: !mark.visible
        text: ring.percentText
        font.pixelSize: 28
        strong: true
    }
    Symbol {
        id: mark
        anchors.centerIn: parent
        visible: ring.isDone || ring.isFailed || ring.works
        size: 48
        name: ring.isDone ? "checkmark" : ring.isFailed ? "exclamationmark" : "shippingbox"
        color: ring.isDone ? Theme.good : ring.isFailed ? Theme.bad : Theme.accent
    }
}
