// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// How long the recording lasts. Its digits keep their places.
Row {
    id: view

    required property HUDModel model
    property double startedAt ///< milliseconds since 1970
    property bool running
    property string time: "00:00"

    /// The calendar, in the same unit. It may be set while we count.
    property var now: () => Date.now()
    property double due: 0 ///< when the next tick is to come; 0 when none is
    property double setForward: 0 ///< by how much the calendar has been set since the start

    function tick() {
        const late = due > 0 ? now() - due : 0; // qmllint disable
        if (Math.abs(late) > 5000) // no tick comes so late or so early by itself
            setForward += late;
        const elapsed = now() - setForward - startedAt;
        time = model.recordingTime(elapsed);
        ticks.interval = 500 - Math.max(0, elapsed) % 500;
        due = running ? now() + ticks.interval : 0;
        if (running)
            ticks.restart();
    }
    onRunningChanged: tick()
    onStartedAtChanged: {
        due = 0;
        setForward = 0;
        tick();
    }

    FontMetrics {
        id: metrics
        font.family: Theme.fontFamily
        font.pixelSize: Theme.sizeBody
        font.weight: Theme.weightMedium
    }
    readonly property real digitWidth: Math.round(Math.max(...Array.from("0123456789", d => metrics.advanceWidth(d))))
    Timer {
        id: ticks
        onTriggered: view.tick()
    }
    Repeater {
        model: view.time.length
        // qmllint disable unqualified
        Label {
            required property int index
            text: view.time[index] ?? ""
            width: text === ":" ? implicitWidth : view.digitWidth
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textSecondary
            font.weight: Theme.weightMedium
            elide: Text.ElideNone
        }
        // qmllint enable unqualified
    }
}
