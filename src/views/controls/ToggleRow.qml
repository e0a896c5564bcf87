// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A line with a switch; all of it can be clicked. It shows what the setting is, not what was clicked.
MenuRowButton {
    id: row

    property string systemIcon
    property string title
    property string subtitle
    property bool isOn: false

    signal switched(bool on)

    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    topPadding: Theme.spacingSmall
    bottomPadding: 6
    text: title
    checkable: true
    checked: isOn
    Accessible.role: Accessible.CheckBox
    Accessible.description: subtitle
    Accessible.onToggleAction: row.clicked()
    onClicked: switched(!isOn)

    contentItem: Item {
        implicitWidth: words.x + heading.implicitWidth + Theme.spacing + pill.width
        implicitHeight: words.implicitHeight

        Symbol {
            id: icon
            anchors { verticalCenter: words.top; verticalCenterOffset: heading.height / 2 }
            visible: row.systemIcon !== ""
            name: row.systemIcon
            color: row.isOn ? Theme.accent : Theme.textSecondary
        }
        Column {
            id: words
            x: row.systemIcon !== "" ? Theme.iconColumn : 0
            width: parent.width - x
            spacing: 4

            Label {
                id: heading
                width: parent.width - pill.width - Theme.spacing
                text: row.title
                wrapMode: Text.Wrap
            }
            Caption {
                width: parent.width
                visible: row.subtitle !== ""
                text: row.subtitle
                wrapMode: Text.Wrap
            }
        }
        PillSwitch {
            id: pill
            anchors { right: parent.right; verticalCenter: words.top; verticalCenterOffset: heading.height / 2 }
            on: row.isOn
        }
    }
}
