// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Types a text out, letter after letter, into the room that it will take.
Item {
    id: typewriter

    property string text
    property bool types: true ///< else it stands still
    property bool showsCaret: true
    property int pace: 24 ///< milliseconds a letter
    property color color: Theme.text
    property alias font: whole.font
    property alias lineHeight: whole.lineHeight
    readonly property bool done: shown >= letters.length

    readonly property var letters: Array.from(text)
    property int shown: 0
    property real startedAt: 0

    /// Begins anew.
    function restart() {
        shown = 0
        startedAt = Date.now()
    }

    implicitHeight: whole.implicitHeight
    onTextChanged: restart()
    onTypesChanged: startedAt = Date.now() - shown * pace

    Frames {
        running: typewriter.types && typewriter.visible && !typewriter.done
        onTick: typewriter.shown = Math.min(typewriter.letters.length,
                                            Math.floor((now - typewriter.startedAt) / typewriter.pace))
    }
    Label {
        id: whole
        width: parent.width
        visible: false
        text: typewriter.text
        wrapMode: Text.Wrap
    }
    TextEdit {
        width: parent.width
        text: typewriter.letters.slice(0, typewriter.shown).join("")
        readOnly: true
        activeFocusOnPress: false
        wrapMode: TextEdit.Wrap
        textFormat: TextEdit.PlainText
        color: typewriter.color
        font: whole.font
        cursorVisible: typewriter.showsCaret
        cursorPosition: length
        Accessible.ignored: true
        // qmllint disable unqualified
        cursorDelegate: Caret {
            visible: typewriter.showsCaret
            blinks: typewriter.types && typewriter.done
        }
        // qmllint enable unqualified
    }
}
