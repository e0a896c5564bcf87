// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A thin rule between groups, with air around it.
Item {
    property real inset: 0 ///< how far the rule stays from both ends

    implicitHeight: 13

    Plane {
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        anchors { leftMargin: parent.inset; rightMargin: parent.inset }
        height: 1
        color: Theme.separator
    }
}
