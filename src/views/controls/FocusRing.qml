// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Where the keyboard is.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    visible: shown
    radius: parent.radius
    color: "transparent"
    border { width: 2; color: Theme.focusRing }
}
