// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The `state` as a dot. Green is for what is ready.
Item {
    id: orb

    property bool isReady: true
    property string label
    readonly property color tone: state === "recording" ? Theme.bad
                                : state === "error" ? Theme.warn
                                : state === "transcribing" ? Theme.accent
                                : isReady ? Theme.good : Theme.warn

    implicitWidth: 28
    implicitHeight: 28
    Accessible.role: Accessible.Graphic
    Accessible.name: label

    Tip { text: orb.label }

    PulseRing {
        anchors.centerIn: parent
        from: dot.width
        to: orb.width
        color: orb.tone
        visible: orb.state === "recording"
    }
    Spinner {
        anchors.centerIn: parent
        size: orb.width
        color: orb.tone
        visible: orb.state === "transcribing"
    }
    Plane {
        id: dot
        anchors.centerIn: parent
        width: orb.state === "transcribing" ? 8 : 12
        height: width
        radius: width / 2
        color: orb.tone
    }
}
