// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A button that stands by itself. The primary one is what the user most likely wants next.
T.AbstractButton {
    id: button

    property bool primary: false
    property bool quiet: false ///< no more than its words until it is pointed at
    property bool compact: false ///< stands in a row of settings, and is no larger than other controls there
    property string leadingIcon
    property string trailingIcon
    readonly property real corner: compact ? Theme.radiusSmall : Theme.radiusMedium
    readonly property color tone: primary && enabled ? Theme.textOnAccent : Theme.text

    implicitWidth: 4 * Math.ceil((contentItem.implicitWidth + leftPadding + rightPadding) / 4)
    implicitHeight: compact ? 32 : 36
    leftPadding: compact ? Theme.spacing : Theme.spacingLarge
    rightPadding: leftPadding
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    background: Plane {
        radius: button.corner
        color: !button.enabled ? button.quiet ? "transparent" : Theme.fill
             : button.primary ? button.pressed ? Theme.accentPressed : button.hovered ? Theme.accentHovered : Theme.accent
             : button.pressed ? Theme.fillPressed : button.hovered ? Theme.fillHovered
             : button.quiet ? "transparent" : Theme.fill
        outlineWidth: button.quiet || button.primary && button.enabled ? 0 : 1
        outline: Theme.outline

        // Outside of the button, since the primary one has the ring's own colour.
        FocusRing {
            anchors.margins: -4
            radius: button.corner + 4
            shown: button.visualFocus
        }
    }
    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.spacingSmall

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.leadingIcon !== ""
                name: button.leadingIcon
                color: button.tone
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                color: button.tone
                font.pixelSize: button.compact ? Theme.sizeBody : Theme.sizeGlance
                font.weight: button.primary ? Theme.weightStrong : Theme.weightMedium
            }
            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.trailingIcon !== ""
                name: button.trailingIcon
                color: button.tone
            }
        }
    }
}
