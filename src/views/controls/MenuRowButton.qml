// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A line of the panel that can be clicked: lights up under the pointer, and shows the keyboard's focus.
T.AbstractButton {
    id: button

    implicitWidth: parent ? parent.width : 0
    implicitHeight: Math.max(32, contentItem.implicitHeight + topPadding + bottomPadding)
    leftPadding: Theme.spacingSmall
    rightPadding: Theme.spacingSmall
    topPadding: Theme.spacingTiny
    bottomPadding: Theme.spacingTiny
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Keys.onDownPressed: button.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: button.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    background: Rectangle {
        radius: Theme.radiusSmall
        color: button.pressed ? Theme.fillPressed : button.hovered ? Theme.fillHovered : "transparent"

        FocusRing { shown: button.visualFocus }
    }
}
