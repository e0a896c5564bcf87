// SPDX-License-Identifier: MIT
import QtQuick

/// An arc that turns while it can be seen.
Symbol {
    id: spinner

    name: "arc"

    NumberAnimation on rotation {
        running: spinner.visible
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
