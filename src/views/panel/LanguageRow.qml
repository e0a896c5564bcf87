// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A row of the list of languages.
Item {
    id: row

    required property int index
    required property string displayName
    required property string detailText
    required property bool isEnabled
    required property bool isSelected
    property bool isCurrent: false   ///< where the arrow keys are
    property bool hasKeyboard: false ///< they go on from here

    signal chosen()

    Accessible.role: Accessible.ListItem
    Accessible.name: detailText !== "" ? displayName + ", " + detailText : displayName
    Accessible.selectable: isEnabled
    Accessible.selected: isSelected
    Accessible.focused: hasKeyboard
    Accessible.onPressAction: if (isEnabled) chosen()

    Plane {
        anchors.fill: parent
        radius: Theme.radiusSmall
        color: row.isCurrent ? Theme.accentFill
             : area.containsMouse && row.isEnabled ? Theme.fillHovered : "transparent"
        outlineWidth: row.isCurrent ? 1 : 0
        outline: Theme.accent
    }
    Symbol {
        x: Theme.spacingSmall
        anchors.verticalCenter: parent.verticalCenter
        name: row.isSelected ? "checkmark" : ""
        size: 14
        color: Theme.accent
    }
    // The remark is what gets shorter when there isn't room for both.
    Label {
        id: name
        anchors { left: parent.left; leftMargin: Theme.iconColumn }
        width: Math.min(Math.ceil(implicitWidth), row.width - Theme.iconColumn - Theme.spacingSmall)
        anchors.verticalCenter: parent.verticalCenter
        text: row.displayName
        color: row.isEnabled ? Theme.text : Theme.textSecondary
    }
    Caption {
        id: detail
        anchors { right: parent.right; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
        width: Math.max(0, Math.min(Math.ceil(implicitWidth), parent.width - name.x - name.width - 2 * Theme.spacingSmall))
        text: row.detailText
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: if (row.isEnabled) row.chosen()
    }
}
