// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A key, as it looks on the keyboard.
Plane {
    property alias text: label.text

    implicitWidth: 4 * Math.ceil((label.implicitWidth + 12) / 4)
    implicitHeight: 20
    radius: 5
    color: Theme.fill
    outlineWidth: 1
    outline: Theme.outline

    Caption {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 8)
        color: Theme.text
        font.weight: Font.Medium
    }
}
