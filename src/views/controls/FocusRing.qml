// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Where the keyboard is.
Plane {
    property bool shown: false

    anchors.fill: parent
    visible: shown
    color: "transparent"
    outlineWidth: 2
    outline: Theme.focusRing
}
