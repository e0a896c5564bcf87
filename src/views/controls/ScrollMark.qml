// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Tells that a view holds more than can be seen of it, and where one is. It stands beside the view.
Plane {
    required property Flickable view
    property Item within: view ///< what has the view's place, beside the mark

    visible: view.contentHeight > view.height
    width: 3
    radius: 1.5
    y: within.y + view.visibleArea.yPosition * view.height
    height: view.visibleArea.heightRatio * view.height
    color: Theme.mark
}
