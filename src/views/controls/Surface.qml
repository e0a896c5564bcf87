// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A card: a plane with a hairline around it, one device pixel thick on every screen.
Rectangle {
    color: Theme.surface
    radius: Theme.radius
    border.width: 1 / Screen.devicePixelRatio * Math.round(Screen.devicePixelRatio)
    border.color: Theme.outline
}
