// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A button within a line of text.
T.AbstractButton {
    id: button

    implicitWidth: label.implicitWidth + 2 * Theme.spacing
    implicitHeight: 24
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Keys.onDownPressed: button.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: button.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    background: Rectangle {
        radius: Theme.radiusSmall
        color: button.pressed ? Theme.fillPressed : button.hovered ? Theme.fillHovered : Theme.fill
        border { width: 1; color: Theme.outline }

        FocusRing { shown: button.visualFocus }
    }
    contentItem: Item {
        Label {
            id: label
            anchors.centerIn: parent
            text: button.text
            font { pixelSize: Theme.sizeSmall; weight: Font.Medium }
        }
    }
}
