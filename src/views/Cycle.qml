// SPDX-License-Identifier: MIT
import QtQuick

/// A value that runs from 0 to 1 again and again. It steps 30 times a second: twice as many pictures would not be
/// seen, but would take their time from the recogniser.
QtObject {
    id: cycle

    property bool running: false
    property int duration: 1000 // milliseconds
    property real value: 0

    property real startedAt: 0
    onRunningChanged: {
        startedAt = Date.now();
        value = 0;
    }
    readonly property Timer ticks: Timer {
        interval: 33
        repeat: true
        running: cycle.running
        onTriggered: cycle.value = Math.max(0, Date.now() - cycle.startedAt) % cycle.duration / cycle.duration
    }
}
