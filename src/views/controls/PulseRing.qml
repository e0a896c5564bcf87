// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A disc that goes out from below a smaller one and fades, over and over, while it can be seen. It is a picture
/// that is scaled: a rectangle with round corners would be drawn anew for each of its sizes.
Symbol {
    id: ring

    property real from: size     ///< its diameter at first
    property alias to: ring.size ///< and at last
    readonly property real pulse: 1 - Math.pow(1 - cycle.value, 2) // quick at first

    name: "circle.fill"
    scale: (from + pulse * (to - from)) / to
    opacity: (1 - pulse) * 0.28

    Cycle {
        id: cycle
        running: ring.visible
        duration: 1400
    }
}
