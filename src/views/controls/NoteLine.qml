// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A remark below a line, in step with its text.
Item {
    id: note

    property string systemIcon
    property string text
    property color tone: Theme.textSecondary

    implicitWidth: parent ? parent.width : 0
    implicitHeight: words.implicitHeight + 2 * Theme.spacingTiny
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Symbol {
        x: Theme.spacingSmall + 1
        y: Theme.spacingTiny + 1
        name: note.systemIcon
        size: 14
        color: note.tone
    }
    Caption {
        id: words
        x: 36
        y: Theme.spacingTiny
        width: note.width - x - Theme.spacingSmall
        text: note.text
        wrapMode: Text.Wrap
    }
}
