// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// The floating list of a LanguagePickerRow, with a search that has the keyboard from the start. As long as it is open
/// nothing else can be used: a click beside it closes it, and so does the Tab key.
FocusScope {
    id: list

    required property TargetLanguagePicker items
    property string title
    property string searchText
    property string emptyText
    property string footerText
    property string footerHelpText
    property bool footerIsWarning: false
    property bool footerActs: true
    property real listY: 0 ///< where it begins
    readonly property int rowHeight: 30

    signal chosen(int row)
    signal dismissed(int reason) ///< it is to be closed, for this Qt.FocusReason
    signal footerAction()

    function choose(row) {
        if (row >= 0)
            chosen(row)
    }
    function go(row) {
        rows.currentIndex = row
        rows.positionViewAtIndex(row, ListView.Contain)
    }

    Component.onCompleted: {
        items.search = ""
        rows.currentIndex = items.selectedRow()
        rows.positionViewAtIndex(Math.max(0, rows.currentIndex), ListView.Center)
        rows.contentY = rows.originY + Math.round((rows.contentY - rows.originY) / rowHeight) * rowHeight
        search.forceActiveFocus(Qt.TabFocusReason)
    }

    Plane {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.scrim

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true // nothing below lights up
            acceptedButtons: Qt.AllButtons
            onClicked: list.dismissed(Qt.MouseFocusReason)
            onWheel: wheel => wheel.accepted = true
        }
    }

    Shadow {
        anchors.fill: plane
        color: Theme.shadow
        radius: plane.radius
    }
    Surface {
        id: plane

        readonly property real room: list.height - y - Theme.spacingSmall
        readonly property real around: search.height + 2 * Theme.spacingSmall + 6 + (foot.visible ? foot.height + 6 : 0)

        x: Theme.spacingSmall
        y: list.listY
        width: list.width - 2 * x
        // Whole rows only, and room for the remark where there is none.
        height: around + list.rowHeight * Math.max(1, Math.min(rows.count, Math.floor((room - around) / list.rowHeight)))
        outline: Theme.hairline
        Accessible.role: Accessible.List
        Accessible.name: list.title

        MouseArea { anchors.fill: parent } // beside the rows

        T.TextField {
            id: search

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.spacingSmall }
            height: 30
            leftPadding: Theme.iconColumn
            rightPadding: Theme.spacingSmall
            verticalAlignment: TextInput.AlignVCenter
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.textOnAccent
            font { family: Theme.fontFamily; pixelSize: Theme.sizeBody }
            Accessible.name: list.searchText
            Accessible.searchEdit: true

            onTextEdited: {
                list.items.search = text
                rows.currentIndex = text ? list.items.next(-1, 1) : list.items.selectedRow()
            }
            Keys.onPressed: event => {
                const page = Math.max(1, Math.floor(rows.height / list.rowHeight) - 1)
                event.accepted = true
                if (event.key === Qt.Key_Down)
                    list.go(list.items.next(rows.currentIndex, 1))
                else if (event.key === Qt.Key_Up)
                    list.go(list.items.next(rows.currentIndex, -1))
                else if (event.key === Qt.Key_PageDown)
                    list.go(list.items.nearest(rows.currentIndex + page))
                else if (event.key === Qt.Key_PageUp)
                    list.go(list.items.nearest(rows.currentIndex - page))
                else if (event.key === Qt.Key_Home && !text)
                    list.go(list.items.nearest(0))
                else if (event.key === Qt.Key_End && !text)
                    list.go(list.items.nearest(rows.count - 1))
                else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                    list.choose(rows.currentIndex)
                else if (event.key === Qt.Key_Backtab)
                    list.dismissed(Qt.BacktabFocusReason)
                else if (event.key === Qt.Key_Tab && footer.visible)
                    footer.forceActiveFocus(Qt.TabFocusReason)
                else if (event.key === Qt.Key_Tab)
                    list.dismissed(Qt.TabFocusReason)
                else
                    event.accepted = false
            }

            background: Plane {
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
                    anchors { left: parent.left; leftMargin: Theme.iconColumn; verticalCenter: parent.verticalCenter }
                    visible: !search.text
                    text: list.searchText
                    font.pixelSize: Theme.sizeBody
                }
                FocusRing {
                    radius: Theme.radiusSmall
                    shown: search.activeFocus
                }
            }
        }

        ListView {
            id: rows

            anchors { left: parent.left; right: parent.right; top: search.bottom; margins: Theme.spacingSmall; topMargin: 6 }
            height: plane.height - plane.around
            clip: true
            model: list.items
            boundsBehavior: Flickable.StopAtBounds
            snapMode: ListView.SnapToItem
            highlightMoveDuration: 0
            keyNavigationEnabled: false

            // qmllint disable unqualified
            delegate: LanguageRow {
                id: entry
                width: rows.width
                height: list.rowHeight
                isCurrent: entry.index === rows.currentIndex
                hasKeyboard: entry.isCurrent && search.activeFocus
                onChosen: list.choose(entry.index)
            }
            // qmllint enable unqualified

            Caption {
                anchors.centerIn: parent
                visible: rows.count === 0
                text: list.emptyText
            }
        }

        ScrollMark {
            view: rows
            anchors { right: parent.right; rightMargin: 2 }
        }

        Item {
            id: foot

            anchors { left: parent.left; right: parent.right; top: rows.bottom; margins: Theme.spacingSmall; topMargin: 6 }
            visible: list.footerText !== ""
            height: footer.visible ? footer.height : remark.height

            NoteButton {
                id: footer

                width: parent.width
                height: implicitHeight
                visible: list.footerText !== "" && list.footerActs
                above: search
                below: footer // nothing is
                column: Theme.iconColumn - leftPadding
                systemIcon: list.footerIsWarning ? "exclamationmark.triangle.fill" : "gearshape"
                tone: list.footerIsWarning ? Theme.warn : Theme.textSecondary
                text: list.footerText
                Accessible.description: list.footerHelpText
                help: list.footerHelpText
                onClicked: list.footerAction()
                Keys.onBacktabPressed: search.forceActiveFocus(Qt.BacktabFocusReason)
                Keys.onTabPressed: list.dismissed(Qt.TabFocusReason)
            }
            NoteLine {
                id: remark

                width: parent.width
                height: implicitHeight
                visible: list.footerText !== "" && !list.footerActs
                inset: Theme.spacingSmall
                column: Theme.iconColumn - inset
                systemIcon: "info.circle"
                text: list.footerText
            }
        }
    }
}
