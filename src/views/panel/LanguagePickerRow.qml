// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A line that tells what is chosen, and opens a floating list to choose from.
MenuRowButton {
    id: row

    property string systemIcon
    property string title
    required property TargetLanguagePicker items
    property string currentDisplay
    property string searchText
    property string emptyText
    property string footerText
    property string footerHelpText
    property bool footerIsWarning: false
    property bool footerActs: true ///< it can be clicked
    property string trailingShortcut
    property Item floatIn ///< what the list floats over
    property bool listOpen: false

    signal select(int index)
    signal footerAction()

    function close(reason) {
        if (!listOpen)
            return
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
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Down && event.modifiers & Qt.AltModifier) {
            listOpen = true
            event.accepted = true
        }
    }

    contentItem: Item {
        implicitWidth: words.x + words.implicitWidth
        implicitHeight: words.implicitHeight

        Symbol {
            y: 1
            name: row.systemIcon
            color: Theme.textSecondary
        }
        Column {
            id: words
            x: Theme.iconColumn
            width: keys.x - Theme.spacingSmall - x
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
            visible: row.trailingShortcut !== ""
            width: row.trailingShortcut !== "" ? implicitWidth : 0
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
        anchors.fill: parent
        active: row.listOpen
        z: 1
        // qmllint disable unqualified
        sourceComponent: LanguageList {
            items: row.items
            title: row.title
            searchText: row.searchText
            emptyText: row.emptyText
            footerText: row.footerText
            footerHelpText: row.footerHelpText
            footerIsWarning: row.footerIsWarning
            footerActs: row.footerActs
            onChosen: index => {
                row.select(index)
                row.close(Qt.TabFocusReason)
            }
            onDismissed: reason => row.close(reason)
            onFooterAction: row.footerAction()
            listY: row.mapToItem(row.floatIn, 0, row.height).y + 2
        }
        // qmllint enable unqualified
    }
}
