// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A remark below a line that can be clicked.
MenuRowButton {
    id: note

    property string systemIcon
    property color tone: Theme.warn

    implicitHeight: words.implicitHeight + 12

    contentItem: Item {
        Symbol {
            x: 1
            y: 3
            name: note.systemIcon
            size: 14
            color: note.tone
        }
        Caption {
            id: words
            x: 28
            y: 2
            width: parent.width - x
            text: note.text
            color: note.tone
            font.weight: Theme.weightMedium
            wrapMode: Text.Wrap
        }
    }
}
