// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A line that can be clicked: lights up under the pointer, and shows the keyboard's focus. The arrow keys go from
/// one to the next.
T.AbstractButton {
    id: button

    property Item above: null ///< where the arrow keys go from here, if not to what is before and after it
    property Item below: null

    function leave(event, to, reason) {
        event.accepted = !(event.modifiers & Qt.AltModifier)
        if (event.accepted)
            to.forceActiveFocus(reason)
    }

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Math.max(32, contentItem.implicitHeight + topPadding + bottomPadding)
    leftPadding: Theme.spacingSmall
    rightPadding: Theme.spacingSmall
    topPadding: Theme.spacingTiny
    bottomPadding: Theme.spacingTiny
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Keys.onDownPressed: event => leave(event, below ?? nextItemInFocusChain(true), Qt.TabFocusReason)
    Keys.onUpPressed: event => leave(event, above ?? nextItemInFocusChain(false), Qt.BacktabFocusReason)

    background: Plane {
        radius: Theme.radiusSmall
        color: button.pressed ? Theme.fillPressed : button.hovered ? Theme.fillHovered : "transparent"

        FocusRing {
            radius: Theme.radiusSmall
            shown: button.visualFocus
        }
    }
}
