// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// How long the recording lasts. Its digits keep their places.
Row {
    id: view

    required property var model
    property double startedAt ///< milliseconds since 1970
    property bool running
    property string time: "00:00"

    function tick() {
        const elapsed = Date.now() - startedAt;
        time = model.recordingTime(elapsed);
        ticks.interval = 500 - Math.max(0, elapsed) % 500;
        if (running)
            ticks.restart();
    }
    onRunningChanged: tick()
    onStartedAtChanged: tick()

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
        Label {
            required property int index
            text: view.time[index] ?? ""
            width: text === ":" ? implicitWidth : view.digitWidth
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textSecondary
            font.weight: Theme.weightMedium
            elide: Text.ElideNone
        }
    }
}
