// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The state as a dot.
Item {
    id: orb

    property string phase
    property string label
    readonly property color tone: phase === "recording" ? Theme.bad
                                : phase === "error" ? Theme.warn
                                : phase === "transcribing" ? Theme.accent : Theme.good

    implicitWidth: 28
    implicitHeight: 28
    Accessible.role: Accessible.Graphic
    Accessible.name: label

    PulseRing {
        anchors.centerIn: parent
        from: dot.width
        to: orb.width
        color: orb.tone
        visible: orb.phase === "recording"
    }
    Spinner {
        anchors.centerIn: parent
        size: orb.width
        color: orb.tone
        visible: orb.phase === "transcribing"
    }
    Rectangle {
        id: dot
        anchors.centerIn: parent
        width: orb.phase === "transcribing" ? 8 : 12
        height: width
        radius: width / 2
        color: orb.tone
    }
}
