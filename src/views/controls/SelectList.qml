// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// The floating list of a Select. As long as it is open nothing else can be used: a click beside it closes it, and so do
/// Escape and the Tab key. The first letters of a row go to it.
FocusScope {
    id: list

    required property T.Control owner ///< it floats below or above this
    property string title
    property var options: []
    property int current: -1
    property string typed ///< the first letters so far
    readonly property int rowHeight: 30

    signal chosen(int index)
    signal dismissed(int reason) ///< it is to be closed, for this Qt.FocusReason

    function go(index) {
        rows.currentIndex = Math.max(0, Math.min(index, rows.count - 1))
        rows.positionViewAtIndex(rows.currentIndex, ListView.Contain)
    }
    function goToLetters(letters) {
        typed += letters.toLocaleLowerCase()
        forgetTyped.restart()
        const found = Array.from(options).findIndex(option => option.toLocaleLowerCase().startsWith(typed))
        if (found >= 0)
            go(found)
    }
    Component.onCompleted: {
        rows.currentIndex = Math.max(0, current)
        rows.forceActiveFocus(Qt.PopupFocusReason)
    }

    Timer {
        id: forgetTyped
        interval: 1000
        onTriggered: list.typed = ""
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true // nothing below lights up
        acceptedButtons: Qt.AllButtons
        onPressed: list.dismissed(Qt.MouseFocusReason)
        onWheel: wheel => wheel.accepted = true
    }
    Shadow {
        anchors.fill: plane
        color: Theme.shadow
        radius: plane.radius
    }
    Surface {
        id: plane

        // Where there is room for it: below its owner, else above, else anywhere.
        readonly property int edge: Theme.spacingSmall
        readonly property point at: list.width > 0 && list.height > 0 ? list.owner.mapToItem(list, 0, 0) : Qt.point(0, 0)
        readonly property real under: at.y + list.owner.height + 4
        readonly property real over: at.y - 4 - height

        x: Math.round(Math.max(edge, Math.min(at.x + list.owner.width - width, list.width - width - edge)))
        y: Math.round(under + height + edge <= list.height ? under : over >= edge ? over : Math.max(edge, list.height - height - edge))
        // The options stand below what is chosen.
        width: Math.min(list.width - 2 * Theme.spacingSmall, list.owner.width + rows.x + Theme.iconColumn - list.owner.leftPadding)
        height: list.rowHeight * Math.max(1, Math.min(rows.count, 12, Math.floor((list.height - 32) / list.rowHeight))) + 8
        radius: Theme.radiusMedium
        outline: Theme.hairline
        Accessible.role: Accessible.List
        Accessible.name: list.title

        ListView {
            id: rows

            anchors { fill: parent; margins: 4 }
            clip: contentHeight > height // rows drawn on whole pixels may end half of one further
            model: list.options
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            keyNavigationEnabled: false
            activeFocusOnTab: false
            onHeightChanged: positionViewAtIndex(currentIndex, ListView.Center)

            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            Keys.onPressed: event => {
                const page = Math.max(1, Math.floor(height / list.rowHeight) - 1)
                event.accepted = true
                if (event.key === Qt.Key_Down)
                    list.go(currentIndex + 1)
                else if (event.key === Qt.Key_Up)
                    list.go(currentIndex - 1)
                else if (event.key === Qt.Key_PageDown)
                    list.go(currentIndex + page)
                else if (event.key === Qt.Key_PageUp)
                    list.go(currentIndex - page)
                else if (event.key === Qt.Key_Home)
                    list.go(0)
                else if (event.key === Qt.Key_End)
                    list.go(count - 1)
                else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space && list.typed === "")
                    list.chosen(currentIndex)
                else if (event.key === Qt.Key_Escape)
                    list.dismissed(Qt.PopupFocusReason)
                else if (event.key === Qt.Key_Tab)
                    list.dismissed(Qt.TabFocusReason)
                else if (event.key === Qt.Key_Backtab)
                    list.dismissed(Qt.BacktabFocusReason)
                else if (event.text !== "" && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier)))
                    list.goToLetters(event.text)
                else
                    event.accepted = false
            }

            // qmllint disable unqualified
            delegate: Item {
                id: row

                required property int index
                required property string modelData
                readonly property bool isCurrent: index === rows.currentIndex

                width: rows.width
                height: list.rowHeight
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData
                Accessible.selectable: true
                Accessible.selected: index === list.current
                Accessible.focused: isCurrent
                Accessible.onPressAction: list.chosen(index)

                Plane {
                    anchors.fill: parent
                    radius: Theme.radiusSmall
                    color: row.isCurrent ? Theme.accentFill : area.containsMouse ? Theme.fillHovered : "transparent"
                    outlineWidth: row.isCurrent ? 1 : 0
                    outline: Theme.accent
                }
                Symbol {
                    x: Theme.spacingSmall
                    anchors.verticalCenter: parent.verticalCenter
                    name: row.index === list.current ? "checkmark" : ""
                    size: 14
                    color: Theme.accent
                }
                Label {
                    anchors { left: parent.left; leftMargin: Theme.iconColumn; right: parent.right; rightMargin: Theme.spacingSmall }
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData
                }
                MouseArea {
                    id: area
                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: list.chosen(row.index)
                }
            }
            // qmllint enable unqualified
        }
        ScrollMark {
            view: rows
            anchors { right: parent.right; rightMargin: 2 }
        }
    }
}
