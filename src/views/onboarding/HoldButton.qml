// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Is held while one speaks: with the mouse, or with the space bar. Whoever can't hold anything presses it
/// twice, through their screen reader.
FocusScope {
    id: button

    property bool recording: false
    property bool done: false
    property bool waits: false ///< it does nothing for now
    property string caption
    property string hotkeyLabel
    property real level: 0
    property bool moves: false

    property bool heldByKey: false
    property bool heldByMouse: false
    readonly property bool held: heldByKey || heldByMouse

    signal press()
    signal release()

    function letGo() {
        heldByKey = false
        heldByMouse = false
    }

    implicitWidth: Math.max(280, 8 * Math.ceil((row.implicitWidth + 64) / 8))
    implicitHeight: 56
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: caption
    Accessible.description: hotkeyLabel
    Accessible.focusable: true
    Accessible.onPressAction: button.recording ? button.release() : button.press()

    onHeldChanged: held ? press() : release()
    onActiveFocusChanged: {
        if (!activeFocus)
            heldByKey = false
    }
    onVisibleChanged: {
        if (!visible)
            letGo()
    }
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Space)
            return
        event.accepted = true
        if (!event.isAutoRepeat)
            heldByKey = true
    }
    Keys.onReleased: event => {
        if (event.key !== Qt.Key_Space)
            return
        event.accepted = true
        if (!event.isAutoRepeat)
            heldByKey = false
    }

    Plane {
        anchors.fill: parent
        radius: height / 2
        color: button.recording ? Theme.bad
             : button.waits ? Theme.fill
             : button.held ? Theme.accentPressed : area.containsMouse ? Theme.accentHovered : Theme.accent

        FocusRing {
            anchors.margins: -4
            radius: parent.radius + 4
            shown: button.activeFocus
        }
    }
    Row {
        id: row
        readonly property color tone: button.waits ? Theme.textSecondary
                                                   : button.recording && !Theme.dark ? "#ffffff" : Theme.textOnAccent
        anchors.centerIn: parent
        spacing: Theme.spacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: !button.recording
            name: button.done ? "checkmark" : "mic.fill"
            size: 20
            color: row.tone
        }
        WaveBars {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.recording
            barCount: 9
            color: row.tone
            animating: button.recording && button.moves
            level: button.level
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: button.caption
            color: row.tone
            font.pixelSize: Theme.sizeTitle
            strong: true
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onPressed: button.heldByMouse = true
        onReleased: button.heldByMouse = false
        onCanceled: button.heldByMouse = false
    }
}
