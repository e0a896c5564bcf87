// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A file that is fetched.
Surface {
    id: row

    property string name
    property string size
    property bool done: false

    implicitHeight: 52
    radius: Theme.radiusMedium
    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + size

    Symbol {
        id: icon
        anchors { left: parent.left; leftMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        name: "shippingbox"
        size: 20
        color: Theme.accent
    }
    Label {
        anchors { left: icon.right; leftMargin: Theme.spacing; verticalCenter: parent.verticalCenter }
        text: row.name
        font.weight: Theme.weightMedium
    }
    Row {
        anchors { right: parent.right; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        spacing: Theme.spacingSmall

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: row.size
            color: Theme.textSecondary
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: row.done
            name: "checkmark.circle.fill"
            size: 18
            color: Theme.good
        }
    }
}
