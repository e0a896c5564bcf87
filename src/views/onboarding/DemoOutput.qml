// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Where the words of the demo land.
Surface {
    id: output

    required property DemoModel demo
    property bool moves: false
    readonly property bool isRecording: demo.state === "recording"
    readonly property bool hasWords: demo.transcript !== ""

    outlineWidth: isRecording ? 2 : 1
    outline: isRecording ? Theme.bad : hasWords ? Theme.accent : Theme.outline
    Accessible.role: Accessible.StaticText
    Accessible.name: demo.outputTitle
    Accessible.description: hasWords ? demo.transcript : demo.output

    Row {
        id: note

        readonly property real line: words.contentHeight / Math.max(1, words.lineCount) ///< how high one is

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 24 }
        visible: !output.hasWords
        spacing: 10

        LiveDot {
            id: dot
            y: Math.round((note.line - height) / 2)
            visible: output.isRecording
            moves: output.moves
        }
        Spinner {
            id: spinner
            y: Math.round((note.line - height) / 2)
            size: 20
            visible: output.demo.state === "transcribing"
            turns: visible && output.moves
        }
        Symbol {
            id: warning
            y: Math.round((note.line - height) / 2)
            visible: output.demo.state === "error"
            name: "exclamationmark.triangle.fill"
            size: 20
            color: Theme.warn
        }
        Label {
            id: words
            width: parent.width - (dot.visible ? dot.width + 10 : 0) - (spinner.visible ? spinner.width + 10 : 0)
                   - (warning.visible ? warning.width + 10 : 0)
            text: output.demo.output
            color: output.demo.state === "error" ? Theme.warn : Theme.textSecondary
            font.pixelSize: 18
            wrapMode: Text.Wrap
        }
    }
    Flickable {
        anchors { fill: parent; margins: 24 }
        visible: output.hasWords
        clip: true
        contentHeight: transcript.implicitHeight
        contentY: Math.max(0, contentHeight - height)
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds

        Typewriter {
            id: transcript
            width: parent.width
            text: output.demo.transcript
            types: output.moves
            font.pixelSize: 18
        }
    }
}
