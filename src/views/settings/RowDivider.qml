// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Between two rows of a card: at the upper edge of the lower one, as far in as what they say.
Plane {
    x: Theme.spacingLarge
    width: (parent?.width ?? 0) - 2 * x
    height: 1
    color: Theme.separator
}
