// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A thin rule between groups, with air around it.
Item {
    implicitWidth: parent ? parent.width : 0
    implicitHeight: 13

    Rectangle {
        anchors { left: parent.left; right: parent.right; margins: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
        height: 1
        color: Theme.separator
    }
}
