// SPDX-License-Identifier: MIT
import QtQuick

/// A ring that swells and fades, over and over, while it can be seen.
Rectangle {
    id: ring

    property real pulse: 0

    radius: width / 2
    color: "transparent"
    border { width: 2; color: Theme.bad }
    scale: 0.5 + pulse * 0.5
    opacity: 1 - pulse

    NumberAnimation on pulse {
        running: ring.visible
        from: 0
        to: 1
        duration: 1400
        easing.type: Easing.OutCubic
        loops: Animation.Infinite
    }
}
