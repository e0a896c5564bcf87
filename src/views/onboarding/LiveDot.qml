// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Something is being recorded right now.
Plane {
    id: dot

    property bool moves: false

    implicitWidth: 12
    implicitHeight: 12
    radius: 6
    color: Theme.bad
    opacity: dot.moves ? 0.45 + 0.55 * Math.abs(1 - 2 * pulse.value) : 1

    Cycle {
        id: pulse
        running: dot.moves && dot.visible
        duration: 1200
    }
}
