// SPDX-License-Identifier: MIT
import QtQuick

/// A disc that goes out from below a smaller one and fades, over and over, while it can be seen.
Rectangle {
    id: ring

    property real from: width ///< its diameter at first
    property real to: width   ///< and at last
    readonly property real pulse: 1 - Math.pow(1 - cycle.value, 2) // quick at first

    width: from + pulse * (to - from)
    height: width
    radius: width / 2
    opacity: (1 - pulse) * 0.28

    Cycle {
        id: cycle
        running: ring.visible
        duration: 1400
    }
}
