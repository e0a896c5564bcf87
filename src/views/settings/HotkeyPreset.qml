// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A hotkey to choose, on one line.
/// Of its own type, since before Qt 6.5 screen readers are told that, and of a mere button nothing else.
T.RadioButton {
    id: row

    property string systemIcon ///< in the place of the mark, until it is chosen
    property var keys: []
    property string badge
    property bool selected: false
    property bool first: false

    readonly property real wholeRoom: width - label.x - Theme.spacingLarge ///< for words and keys
    readonly property bool showsKeys: label.implicitWidth + Theme.spacing + caps.width <= wholeRoom ///< else the words do alone
    readonly property real room: wholeRoom - (showsKeys ? caps.width + Theme.spacing : 0)
    /// Where both don't fit on one line.
    readonly property bool badgeBelow: pill.visible && label.implicitWidth + Theme.spacingSmall + pill.width > room
    readonly property real wordsHeight: label.height + (badgeBelow ? Theme.spacingTiny + pill.height : 0)

    width: parent?.width ?? 0
    implicitHeight: Math.max(44, wordsHeight + 2 * Theme.spacing)
    autoExclusive: false
    checked: selected
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.description: badge
    Accessible.onPressAction: row.clicked()
    Accessible.onToggleAction: row.clicked()
    onClicked: checked = Qt.binding(() => selected)
    Keys.onReturnPressed: row.clicked()
    Keys.onEnterPressed: row.clicked()
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    background: Item {
        RowDivider { visible: !row.first }
        Plane {
            anchors { fill: parent; margins: 4 }
            radius: Theme.radiusSmall
            color: row.pressed ? Theme.fillPressed : row.hovered ? Theme.fillHovered : "transparent"

            FocusRing {
                radius: Theme.radiusSmall
                shown: row.visualFocus
            }
        }
    }
    contentItem: Item {
        RadioMark {
            x: Theme.spacingLarge
            anchors.verticalCenter: parent.verticalCenter
            visible: row.systemIcon === "" || row.selected
            on: row.selected
        }
        Symbol {
            x: Theme.spacingLarge + 2
            anchors.verticalCenter: parent.verticalCenter
            visible: row.systemIcon !== "" && !row.selected
            name: row.systemIcon
            color: Theme.textSecondary
        }
        Label {
            id: label
            x: 48
            y: Math.round((parent.height - row.wordsHeight) / 2)
            width: Math.min(implicitWidth, row.room)
            text: row.text
            wrapMode: Text.Wrap
        }
        Pill {
            id: pill
            x: row.badgeBelow ? label.x : label.x + label.width + Theme.spacingSmall
            y: row.badgeBelow ? label.y + label.height + Theme.spacingTiny : Math.round(label.y + (label.height - height) / 2)
            visible: row.badge !== ""
            implicitHeight: 20
            text: row.badge
        }
        Row {
            id: caps
            x: parent.width - width - Theme.spacingLarge
            anchors.verticalCenter: parent.verticalCenter
            visible: row.showsKeys
            spacing: 6

            Repeater {
                model: row.keys

                KbdCap {
                    required property string modelData
                    text: modelData
                }
            }
        }
    }
}
