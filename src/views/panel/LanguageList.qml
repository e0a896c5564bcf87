// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// The floating list of a LanguagePickerRow, with a search that has the keyboard from the start.
Surface {
    id: list

    property var picker
    property real room: 0 ///< how tall it may become
    readonly property int rowHeight: 30
    readonly property real around: search.height + (footer.visible ? footer.height + 24 : 18)
    readonly property var items: picker.items

    function choose(row) {
        if (row < 0)
            return
        picker.selected(row)
        picker.close(Qt.TabFocusReason)
    }

    // Whole rows only, and room for the remark where there is none.
    height: around + rowHeight * Math.max(1, Math.min(rows.count, Math.floor((room - around) / rowHeight)))
    color: Theme.surface
    Accessible.role: Accessible.List
    Accessible.name: picker.title

    Component.onCompleted: {
        items.search = ""
        rows.currentIndex = items.selectedRow()
        rows.positionViewAtIndex(Math.max(0, rows.currentIndex), ListView.Center)
        rows.contentY = rows.originY + Math.round((rows.contentY - rows.originY) / rowHeight) * rowHeight
        search.forceActiveFocus(Qt.TabFocusReason)
    }

    MouseArea { anchors.fill: parent } // what lies below hears nothing of clicks beside the rows

    T.TextField {
        id: search

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 6 }
        height: 30
        leftPadding: 30
        rightPadding: Theme.spacingSmall
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.textOnAccent
        font { family: Theme.fontFamily; pixelSize: Theme.sizeBody }
        Accessible.name: list.picker.searchText
        Accessible.searchEdit: true

        onTextEdited: {
            list.items.search = text
            rows.currentIndex = text ? list.items.next(-1, 1) : list.items.selectedRow()
        }
        Keys.onDownPressed: rows.currentIndex = list.items.next(rows.currentIndex, 1)
        Keys.onUpPressed: rows.currentIndex = list.items.next(rows.currentIndex, -1)
        Keys.onReturnPressed: list.choose(rows.currentIndex)
        Keys.onEnterPressed: list.choose(rows.currentIndex)
        Keys.onBacktabPressed: list.picker.close(Qt.BacktabFocusReason)
        Keys.onTabPressed: footer.forceActiveFocus(Qt.TabFocusReason)

        background: Rectangle {
            radius: Theme.radiusSmall
            color: Theme.fill

            Symbol {
                x: Theme.spacingSmall
                anchors.verticalCenter: parent.verticalCenter
                name: "magnifyingglass"
                size: 14
                color: Theme.textSecondary
            }
            Caption {
                anchors { left: parent.left; leftMargin: 30; verticalCenter: parent.verticalCenter }
                visible: !search.text
                text: list.picker.searchText
                font.pixelSize: Theme.sizeBody
            }
            FocusRing { shown: search.activeFocus }
        }
    }

    ListView {
        id: rows

        anchors { left: parent.left; right: parent.right; top: search.bottom; bottom: footer.visible ? footer.top : parent.bottom; margins: 6 }
        clip: true
        model: list.items
        boundsBehavior: Flickable.StopAtBounds
        snapMode: ListView.SnapToItem
        highlightMoveDuration: 0
        keyNavigationEnabled: false

        delegate: Item {
            id: entry

            required property int index
            required property string displayName
            required property string detailText
            required property bool isEnabled
            required property bool isSelected

            width: ListView.view.width
            height: list.rowHeight
            Accessible.role: Accessible.ListItem
            Accessible.name: detailText ? displayName + ", " + detailText : displayName
            Accessible.selectable: isEnabled
            Accessible.selected: isSelected
            Accessible.focused: index === rows.currentIndex && search.activeFocus
            Accessible.onPressAction: if (isEnabled) list.choose(index)

            Rectangle {
                anchors.fill: parent
                radius: Theme.radiusSmall
                color: entry.index === rows.currentIndex ? Theme.accentFill
                     : area.containsMouse && entry.isEnabled ? Theme.fillHovered : "transparent"
            }
            Symbol {
                x: Theme.spacingSmall
                anchors.verticalCenter: parent.verticalCenter
                name: entry.isSelected ? "checkmark" : ""
                size: 14
                color: Theme.accent
            }
            Label {
                anchors { left: parent.left; leftMargin: 30; right: detail.left; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
                text: entry.displayName
                color: entry.isEnabled ? Theme.text : Theme.textSecondary
            }
            Caption {
                id: detail
                anchors { right: parent.right; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
                text: entry.detailText
            }
            MouseArea {
                id: area
                anchors.fill: parent
                hoverEnabled: true
                onClicked: if (entry.isEnabled) list.choose(entry.index)
            }
        }

        Caption {
            anchors.centerIn: parent
            visible: rows.count === 0
            text: list.picker.emptyText
        }

    }

    // There is more than can be seen.
    Rectangle {
        visible: rows.contentHeight > rows.height
        anchors { right: parent.right; rightMargin: 2 }
        width: 3
        radius: 1.5
        y: rows.y + rows.visibleArea.yPosition * rows.height
        height: rows.visibleArea.heightRatio * rows.height
        color: Theme.mark
    }

    NoteButton {
        id: footer

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 6 }
        visible: list.picker.footerText
        systemIcon: list.picker.footerIsWarning ? "exclamationmark.triangle.fill" : "gearshape"
        tone: list.picker.footerIsWarning ? Theme.warn : Theme.textSecondary
        text: list.picker.footerText
        Accessible.description: list.picker.footerHelpText
        onClicked: list.picker.footerClicked()
        Keys.onBacktabPressed: search.forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onUpPressed: search.forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onTabPressed: list.picker.close(Qt.TabFocusReason)
    }
}
