// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A window of another program, drawn, into which a dictation is typed.
Surface {
    id: mock

    property string systemIcon
    property string name
    property string sample
    property bool mono: false
    property string recordingText
    property color tint: Theme.accent
    property bool moves: false
    readonly property bool done: writer.done

    function restart() {
        writer.restart()
    }

    Plane {
        id: bar
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 1 }
        height: 40
        radius: Theme.radius - 1
        color: Theme.fill

        Plane { // square where it meets the content
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: Theme.radius
            color: Theme.fill
        }
        Symbol {
            id: icon
            anchors { left: parent.left; leftMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
            name: mock.systemIcon
            size: 18
            color: mock.tint
        }
        Label {
            anchors { left: icon.right; leftMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
            text: mock.name
            font.weight: Theme.weightMedium
        }
        Row {
            anchors { right: parent.right; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
            spacing: Theme.spacingSmall

            Repeater {
                model: 3

                Plane {
                    width: 10
                    height: 10
                    radius: 5
                    color: Theme.hairline
                }
            }
        }
    }
    Typewriter {
        id: writer
        anchors { left: parent.left; right: parent.right; top: bar.bottom; margins: 24 }
        types: mock.moves
        text: mock.sample
        pace: 42
        font.family: mock.mono ? "monospace" : Theme.fontFamily
        font.pixelSize: mock.mono ? 18 : 20
    }
    Plane {
        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.spacingLarge }
        width: hold.width + 28
        height: 36
        radius: 18
        color: Theme.accent
        opacity: writer.done ? 0 : 1

        Behavior on opacity { NumberAnimation { duration: Theme.motion } }

        Row {
            id: hold
            anchors.centerIn: parent
            spacing: 10

            WaveBars {
                anchors.verticalCenter: parent.verticalCenter
                barCount: 7
                color: Theme.textOnAccent
                animating: mock.moves && !writer.done
                level: 0.6
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: mock.recordingText
                color: Theme.textOnAccent
                font.weight: Theme.weightStrong
            }
        }
    }
}
