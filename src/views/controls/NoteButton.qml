// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A remark below a line that can be clicked.
MenuRowButton {
    id: note

    property string systemIcon
    property string help ///< explains it where the pointer rests
    property color tone: Theme.warn
    property real column: Theme.iconColumn ///< where its words begin, from its symbol on

    implicitHeight: words.implicitHeight + 12

    Tip { text: note.help }

    contentItem: Item {
        implicitWidth: words.x + words.implicitWidth

        Symbol {
            x: Math.round((16 - size) / 2)
            y: 3
            name: note.systemIcon
            size: 14
            color: note.tone
        }
        Caption {
            id: words
            x: note.column
            y: 2
            width: parent.width - x
            text: note.text
            color: note.tone
            font.weight: Theme.weightMedium
            wrapMode: Text.Wrap
        }
    }
}
