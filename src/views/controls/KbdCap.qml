// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A key, as it looks on the keyboard.
Rectangle {
    property alias text: label.text

    implicitWidth: label.implicitWidth + 12
    implicitHeight: 20
    radius: 5
    color: Theme.fill
    border { width: 1; color: Theme.outline }

    Caption {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 8)
        color: Theme.text
        font.weight: Font.Medium
    }
}
