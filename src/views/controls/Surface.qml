// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A card: a plane with a hairline around it.
Plane {
    color: Theme.surface
    radius: Theme.radius
    outlineWidth: 1
    outline: Theme.outline
}
