// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Recording: what to do, from which language to which, the level and the time.
HUDContent {
    id: content

    required property HUDModel model
    property bool animating
    property real level

    contentWidth: row.width + Theme.spacingLarge + Theme.spacingWide
    contentHeight: Math.max(56, words.height + 2 * 10)

    Row {
        id: row
        x: content.inset + Theme.spacingLarge
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing

        PulsingMicOrb {
            anchors.verticalCenter: parent.verticalCenter
            running: content.animating
        }
        Column {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                text: content.model.releaseHint
                width: Math.min(Math.ceil(implicitWidth), 250)
                font.pixelSize: Theme.sizeGlance
                font.weight: Theme.weightMedium
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
            Caption {
                visible: text !== ""
                text: content.model.languageIndicator
                font.pixelSize: Theme.sizeTiny
                font.letterSpacing: 0.5
                font.weight: Theme.weightMedium
            }
        }
        // The row of bars is wider than its box, evenly on both sides.
        Item {
            width: bars.barsWidth
            height: bars.height
            anchors.verticalCenter: parent.verticalCenter

            WaveformBars {
                id: bars
                anchors.centerIn: parent
                animating: content.animating
                level: content.level
            }
        }
        RecordingTimerView {
            anchors.verticalCenter: parent.verticalCenter
            running: content.animating
            model: content.model
            startedAt: content.model.startedAt
        }
    }
}
