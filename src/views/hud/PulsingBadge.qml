// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A disc with a symbol, and a ring that goes out from it again and again.
Item {
    id: badge

    property bool running: false
    property string symbol
    property int symbolSize: 16
    property color color: Theme.accent
    property color symbolColor: Theme.textOnAccent

    width: 28
    height: 28

    PulseRing {
        anchors.centerIn: parent
        from: badge.width * 0.9
        to: badge.width * 1.5
        color: badge.color
        visible: badge.running
    }
    Plane {
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
