// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One thing that speaks for Talvera.
Row {
    id: bullet

    property string systemIcon
    property string text

    spacing: Theme.spacing
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Plane {
        width: 32
        height: 32
        radius: Theme.radiusMedium
        color: Theme.accentFill

        Symbol {
            anchors.centerIn: parent
            name: bullet.systemIcon
            color: Theme.accent
        }
    }
    Label {
        anchors.verticalCenter: parent.verticalCenter
        text: bullet.text
        font.pixelSize: Theme.sizeTitle
        font.weight: Theme.weightMedium
    }
}
