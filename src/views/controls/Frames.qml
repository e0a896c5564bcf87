// SPDX-License-Identifier: MIT
import QtQuick

/// Ticks 30 times a second: twice as many pictures would not be seen, but would take their time from the recogniser.
/// All that run tick at the same moments, so that what moves in one window is drawn together.
Timer {
    id: frames

    property real now ///< milliseconds since 1970
    signal tick

    readonly property int length: 34 // milliseconds
    function untilNext() {
        const left = length - Date.now() % length;
        return left < 5 ? left + length : left; // a timer may be a little early
    }

    repeat: true
    onRunningChanged: {
        if (running)
            interval = untilNext();
    }
    onTriggered: {
        now = Date.now();
        interval = untilNext();
        tick();
    }
}
