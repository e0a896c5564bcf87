// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A section to choose.
/// Of its own type, since before Qt 6.5 screen readers are told that, and of a mere button nothing else.
T.TabButton {
    id: item

    property string systemIcon
    property bool selected: false

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: 36
    leftPadding: Theme.spacing
    rightPadding: Theme.spacing
    checkable: false // the window says what is selected
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: item.clicked()
    Keys.onReturnPressed: item.clicked()
    Keys.onEnterPressed: item.clicked()

    background: Plane {
        radius: Theme.radiusSmall
        color: item.selected ? Theme.accentFill : item.pressed ? Theme.fillPressed
             : item.hovered ? Theme.fillHovered : "transparent"

        FocusRing {
            radius: Theme.radiusSmall
            shown: item.visualFocus
        }
    }
    contentItem: Item {
        implicitWidth: label.x + Math.ceil(chosen.advanceWidth)

        // It keeps its width when it is chosen.
        TextMetrics {
            id: chosen
            text: item.text
            font { family: Theme.fontFamily; pixelSize: Theme.sizeBody; weight: Theme.weightStrong }
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: item.systemIcon
            color: item.selected ? Theme.accent : Theme.textSecondary
        }
        Label {
            id: label
            x: Theme.iconColumn
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            text: item.text
            font.weight: item.selected ? Theme.weightStrong : Theme.weightMedium
        }
    }
}
