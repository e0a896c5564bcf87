// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A hotkey to choose. Not made of a button of the toolkit's: screen readers would hear of a push button, and never
/// whether it is the one that is chosen.
Item {
    id: row

    property string label
    property string desc
    property var keys: []
    property string badge
    property bool selected: false
    property bool holdsField: false ///< a field in it is what can be used
    property alias trailing: slot.data ///< stands where the keys would

    readonly property bool visualFocus: activeFocus && !pointed
    property bool pointed: false ///< it has the keyboard since it was clicked on
    property int heldKey: 0 ///< has clicked, and repeats until it goes up

    signal clicked()

    implicitHeight: 52
    activeFocusOnTab: !holdsField
    Accessible.role: Accessible.RadioButton
    Accessible.name: label
    Accessible.description: badge !== "" ? badge + ". " + desc : desc
    Accessible.ignored: holdsField
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.onPressAction: row.clicked()
    Accessible.onToggleAction: row.clicked()
    onActiveFocusChanged: {
        if (activeFocus)
            return
        pointed = false
        heldKey = 0
    }
    Keys.onPressed: event => {
        pointed = false
        event.accepted = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key)
        if (event.accepted && !event.isAutoRepeat && heldKey !== event.key) {
            heldKey = event.key // repeats need not be marked as such
            row.clicked()
        }
    }
    Keys.onReleased: event => {
        if (!event.isAutoRepeat)
            heldKey = 0
    }
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Plane {
        anchors.fill: parent
        radius: Theme.radiusMedium
        color: row.selected ? Theme.accentFill : area.pressed ? Theme.fillHovered
             : area.containsMouse ? Theme.fill : Theme.surface
        outlineWidth: 1 // the ring of the keyboard is the only frame that is wider
        outline: row.selected ? Theme.accent : Theme.outline

        FocusRing {
            anchors.margins: -4
            radius: Theme.radiusMedium + 4
            shown: row.visualFocus
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onPressed: {
            if (row.holdsField)
                return
            row.pointed = true
            row.forceActiveFocus(Qt.MouseFocusReason)
        }
        onClicked: row.clicked()
    }
    RadioMark {
        id: mark
        anchors { left: parent.left; leftMargin: Theme.spacingLarge; verticalCenter: parent.verticalCenter }
        on: row.selected
    }
    Column {
        anchors { left: mark.right; leftMargin: Theme.spacingLarge; right: caps.left; rightMargin: Theme.spacing }
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        Row {
            height: name.implicitHeight // with a badge, too: the words of all rows stand alike
            spacing: Theme.spacingSmall

            Label {
                id: name
                anchors.verticalCenter: parent.verticalCenter
                text: row.label
                font.pixelSize: Theme.sizeGlance
                strong: true
            }
            Pill {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.badge !== ""
                implicitHeight: 18
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

            // qmllint disable unqualified
            KbdCap {
                required property string modelData
                implicitHeight: 24
                text: modelData
                color: row.selected || area.containsMouse ? Theme.surface : Theme.fill // seen on the row's colours
            }
            // qmllint enable unqualified
        }
        Item {
            id: slot
            implicitWidth: childrenRect.width
            implicitHeight: childrenRect.height
            visible: childrenRect.width > 0
        }
    }
}
