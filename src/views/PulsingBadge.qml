// SPDX-License-Identifier: MIT
import QtQuick

/// A disc with a symbol, and a ring that goes out from it again and again.
Item {
    id: badge

    property bool running: false
    readonly property real pulse: 1 - Math.pow(1 - cycle.value, 2) // quick at first
    property string symbol
    property int symbolSize: 16
    property color color: Theme.accent
    property color symbolColor: Theme.textOnAccent

    width: 28
    height: 28

    Cycle {
        id: cycle
        running: badge.running
        duration: 1400
    }
    Rectangle {
        anchors.centerIn: parent
        width: badge.width * (badge.pulse * 0.6 + 0.9)
        height: width
        radius: width / 2
        color: badge.color
        opacity: (1 - badge.pulse) * 0.28
        visible: badge.running
    }
    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: badge.color
    }
    Symbol {
        anchors.centerIn: parent
        size: badge.symbolSize
        name: badge.symbol
        color: badge.symbolColor
    }
}
