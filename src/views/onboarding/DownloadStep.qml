// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The speech model comes.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    readonly property DownloadModel download: wizard.download
    readonly property bool isFailed: download.phase === "failed"
    readonly property bool warns: download.remark !== "" && !isFailed

    StepHeading {
        x: 48
        y: 36
        width: parent.width - 96
        title: step.download.title
        body: step.download.body
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 144
        width: 520
        spacing: 0

        ProgressRing {
            anchors.horizontalCenter: parent.horizontalCenter
            progress: step.download.progress
            percentText: step.download.percentText
            phase: step.download.phase
            moves: step.moves
            Accessible.role: Accessible.ProgressBar
            Accessible.name: step.download.status
            Accessible.description: step.download.percentText
        }
        Label {
            width: parent.width
            topPadding: Theme.spacingLarge
            horizontalAlignment: Text.AlignHCenter
            text: step.download.status
            color: step.isFailed ? Theme.bad : Theme.text
            font.pixelSize: Theme.sizeLarge
            strong: true
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: parent.width
            visible: detail.text !== ""
            implicitHeight: detail.implicitHeight

            Symbol {
                // Beside the first line.
                x: detail.x + Math.round((detail.width - detail.contentWidth) / 2) - width - 6
                y: detail.topPadding + Math.round((detail.contentHeight / Math.max(1, detail.lineCount) - height) / 2)
                visible: step.warns
                name: "exclamationmark.triangle.fill"
                size: 14
                color: Theme.warn
            }
            Label {
                id: detail
                x: step.warns ? 20 : 0
                width: parent.width - 2 * x
                topPadding: 6
                horizontalAlignment: Text.AlignHCenter
                text: step.isFailed ? step.download.failure
                    : step.warns ? step.download.remark : step.download.progressText
                color: step.warns ? Theme.warn : Theme.textSecondary
                font.pixelSize: Theme.sizeGlance
                wrapMode: Text.Wrap
                Accessible.ignored: false
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        Item {
            width: 1
            height: Theme.spacing
            visible: step.isFailed
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: step.isFailed
            primary: true
            leadingIcon: "arrow.clockwise"
            text: step.download.retryText
            onClicked: step.download.retry()
        }
    }
    FileRow {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 24 }
        width: 520
        name: step.download.fileName
        size: step.download.fileSize
        done: step.download.phase === "done"
    }
}
