// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A section to choose.
T.AbstractButton {
    id: item

    property string systemIcon
    property bool selected: false

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: 36
    leftPadding: Theme.spacing
    rightPadding: Theme.spacing
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
        implicitWidth: label.x + label.implicitWidth

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
