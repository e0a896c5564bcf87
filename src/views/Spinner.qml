// SPDX-License-Identifier: MIT
import QtQuick

/// An arc that turns while it can be seen.
Symbol {
    id: spinner

    name: "arc"

    rotation: turn.value * 360

    Cycle {
        id: turn
        running: spinner.visible
        duration: 900
    }
}
