// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A line that tells what is chosen, and opens a floating list to choose from.
MenuRowButton {
    id: row

    property string systemIcon
    property string title
    property var items
    property string currentDisplay
    property string searchText
    property string emptyText
    property string footerText
    property string footerHelpText
    property bool footerIsWarning: false
    property string trailingShortcut
    property Item floatIn ///< what the list floats over
    property bool listOpen: false

    signal selected(int index)
    signal footerClicked()

    function close(reason) {
        listOpen = false
        forceActiveFocus(reason)
    }

    topPadding: 6
    bottomPadding: 6
    text: title
    Accessible.role: Accessible.ComboBox
    Accessible.description: currentDisplay
    Accessible.onPressAction: row.clicked()

    onClicked: listOpen = !listOpen
    Keys.onDownPressed: if (!listOpen) listOpen = true

    contentItem: Item {
        implicitHeight: words.implicitHeight

        Symbol {
            id: icon
            y: 1
            name: row.systemIcon
            color: Theme.textSecondary
        }
        Column {
            id: words
            anchors { left: icon.right; leftMargin: Theme.spacing; right: keys.left; rightMargin: Theme.spacingSmall }
            spacing: 2

            Label {
                width: parent.width
                text: row.title
                wrapMode: Text.Wrap
            }
            Caption {
                width: parent.width
                text: row.currentDisplay
            }
        }
        KbdCap {
            id: keys
            anchors { right: chevron.left; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
            text: row.trailingShortcut
            visible: row.trailingShortcut
            width: visible ? implicitWidth : 0
        }
        Symbol {
            id: chevron
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            name: "chevron.down"
            size: 14
            color: Theme.textSecondary
            rotation: row.listOpen ? 180 : 0
        }
    }

    Loader {
        parent: row.floatIn
        active: row.listOpen
        z: 1
        sourceComponent: LanguageList {
            picker: row
            y: row.mapToItem(row.floatIn, 0, row.height).y + 2
            x: Theme.spacingSmall
            width: row.floatIn.width - 2 * x
            room: row.floatIn.height - y - Theme.spacingSmall
        }
    }
}
