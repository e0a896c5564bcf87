// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A few words that say what something is, in a capsule.
Plane {
    id: pill

    property string text
    property string systemIcon
    property color tone: Theme.accent

    implicitWidth: 4 * Math.ceil((row.implicitWidth + 24) / 4)
    implicitHeight: 28
    radius: height / 2
    color: Theme.accentFill

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: pill.systemIcon !== ""
            name: pill.systemIcon
            size: 14
            color: pill.tone
        }
        Caption {
            anchors.verticalCenter: parent.verticalCenter
            text: pill.text
            color: pill.tone
            font.weight: Theme.weightStrong
        }
    }
}
