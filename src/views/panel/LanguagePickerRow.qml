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
    property string shortcutHelp
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
        id: line

        // The key stands beside both lines if it can, else beside the first, else below them.
        readonly property real roomBesideKey: words.width - keys.implicitWidth - Theme.spacingSmall
        readonly property bool capFits: heading.implicitWidth <= roomBesideKey
        readonly property bool capFitsBoth: capFits && choice.implicitWidth <= roomBesideKey

        implicitWidth: words.x + heading.implicitWidth + Theme.spacingSmall + chevron.width
        implicitHeight: words.implicitHeight

        Symbol {
            y: 1
            name: row.systemIcon
            color: Theme.textSecondary
        }
        Column {
            id: words
            x: Theme.iconColumn
            width: chevron.x - Theme.spacingSmall - x
            spacing: 2

            Label {
                id: heading
                width: parent.width
                text: row.title
                wrapMode: Text.WordWrap
            }
            Caption {
                id: choice
                width: parent.width
                text: row.currentDisplay
            }
            Item {
                visible: keys.visible && !line.capFits
                width: parent.width
                height: keys.height + 2
            }
        }
        KbdCap {
            id: keys
            x: line.capFits ? words.x + words.width - width : words.x
            y: line.capFitsBoth ? Math.round((line.height - height) / 2)
             : line.capFits ? Math.round((heading.height - height) / 2) : words.height - height
            text: row.trailingShortcut
            visible: row.trailingShortcut !== ""
            width: Math.min(implicitWidth, line.width - words.x)

            Tip { text: row.shortcutHelp }
        }
        Symbol {
            id: chevron
            anchors { right: parent.right; verticalCenter: keys.visible && line.capFits ? keys.verticalCenter : parent.verticalCenter }
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
