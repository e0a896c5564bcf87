// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A value that runs from 0 to 1 again and again.
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
    readonly property Frames frames: Frames {
        running: cycle.running
        onTick: {
            if (now < cycle.startedAt) // the calendar has been set back
                cycle.startedAt = now;
            cycle.value = (now - cycle.startedAt) % cycle.duration / cycle.duration;
        }
    }
}
