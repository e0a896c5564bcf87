// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A hotkey to choose.
T.AbstractButton {
    id: row

    property string label
    property string desc
    property var keys: []
    property string badge
    property bool selected: false
    property alias trailing: slot.data ///< stands where the keys would

    implicitHeight: 56
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    text: label
    checkable: false
    Accessible.role: Accessible.RadioButton
    Accessible.name: label
    Accessible.description: badge !== "" ? badge + ". " + desc : desc
    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.onPressAction: row.clicked()
    Accessible.onToggleAction: row.clicked()
    Keys.onReturnPressed: row.clicked()
    Keys.onEnterPressed: row.clicked()
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    background: Plane {
        radius: Theme.radiusMedium
        color: row.pressed ? Theme.fillPressed : row.hovered ? Theme.fillHovered
             : row.selected ? Theme.accentFill : Theme.surface
        outlineWidth: row.selected ? 2 : 1
        outline: row.selected ? Theme.accent : Theme.outline

        FocusRing {
            anchors.margins: -3
            radius: Theme.radiusMedium + 3
            shown: row.visualFocus
        }
    }
    contentItem: Item {
        RadioMark {
            id: mark
            anchors { left: parent.left; leftMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
            on: row.selected
        }
        Column {
            anchors { left: mark.right; leftMargin: Theme.spacingLarge; right: caps.left; rightMargin: Theme.spacing }
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Row {
                spacing: Theme.spacingSmall

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.label
                    font.pixelSize: Theme.sizeGlance
                    strong: true
                }
                Pill {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: row.badge !== ""
                    implicitHeight: 20
                    text: row.badge
                    tone: row.selected ? Theme.textOnAccent : Theme.accent
                    color: row.selected ? Theme.accent : Theme.accentFill
                }
            }
            Caption {
                width: parent.width
                text: row.desc
                elide: Text.ElideRight
            }
        }
        Row {
            id: caps
            anchors { right: parent.right; rightMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
            spacing: 6

            Repeater {
                model: row.keys

                KbdCap {
                    required property string modelData
                    implicitHeight: 24
                    text: modelData
                }
            }
            Item {
                id: slot
                implicitWidth: childrenRect.width
                implicitHeight: childrenRect.height
                visible: childrenRect.width > 0
            }
        }
    }
}
