// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A remark below a line, in step with its text.
Item {
    id: note

    property string systemIcon
    property string text
    property color tone: Theme.textSecondary
    property real inset: 0                 ///< how far it stays from both ends
    property real column: Theme.iconColumn ///< where its words begin, from its symbol on

    implicitWidth: words.x + words.implicitWidth + inset
    implicitHeight: words.implicitHeight + 2 * Theme.spacingTiny
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Symbol {
        x: note.inset + 1
        // Beside the first line.
        y: words.y + Math.round((words.contentHeight / Math.max(1, words.lineCount) - height) / 2)
        name: note.systemIcon
        size: 14
        color: note.tone
    }
    Caption {
        id: words
        x: note.inset + note.column
        y: Theme.spacingTiny
        width: note.width - x - note.inset
        text: note.text
        wrapMode: Text.Wrap
    }
}
