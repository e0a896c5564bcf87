// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A button within a line of text.
MenuRowButton {
    id: button

    implicitHeight: 24
    leftPadding: Theme.spacing
    rightPadding: Theme.spacing
    topPadding: 0
    bottomPadding: 0

    background: Plane {
        radius: Theme.radiusSmall
        color: button.pressed ? Theme.fillPressed : button.hovered ? Theme.fillHovered : Theme.fill
        outlineWidth: 1
        outline: Theme.outline

        FocusRing {
            radius: Theme.radiusSmall
            shown: button.visualFocus
        }
    }
    contentItem: Item {
        implicitWidth: 4 * Math.ceil(label.implicitWidth / 4)

        Label {
            id: label
            anchors.centerIn: parent
            text: button.text
            font { pixelSize: Theme.sizeSmall; weight: Font.Medium }
        }
    }
}
