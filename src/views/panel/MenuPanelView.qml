// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The panel at the item in the tray.
FocusScope {
    id: view

    property var panel
    readonly property int fittingHeight: content.implicitHeight + 2 * Theme.spacingSmall

    implicitWidth: 300
    Accessible.role: Accessible.Pane
    Accessible.name: panel.statusTitle

    Surface {
        anchors.fill: parent
        color: Theme.overlayOpaque
        border.color: Theme.overlayOutline
    }

    Flickable {
        anchors { fill: parent; margins: Theme.spacingSmall }
        contentHeight: content.implicitHeight
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive

        Column {
            id: content
            width: parent.width

            ReadinessBanner {
                readiness: view.panel
                visible: view.panel.bannerTitle
            }
            Item {
                visible: view.panel.bannerTitle
                width: 1
                height: Theme.spacingTiny
            }
            StatusHeader { panel: view.panel }
            MenuDivider {}
            LanguagePickerRow {
                floatIn: view
                systemIcon: "globe"
                title: view.panel.texts.translateTo
                items: view.panel.targetLanguages
                currentDisplay: view.panel.targetLanguages.currentDisplay
                searchText: view.panel.texts.searchLanguages
                emptyText: view.panel.texts.noLanguage
                footerText: view.panel.languageModelAvailable ? view.panel.texts.addMoreLanguages : view.panel.texts.aiOff
                footerIsWarning: !view.panel.languageModelAvailable
                footerHelpText: view.panel.languageModelAvailable ? "" : view.panel.texts.aiOffHint
                trailingShortcut: view.panel.toggleShortcut
                onSelected: index => view.panel.targetLanguages.select(index)
                onFooterClicked: view.panel.openLanguageModelSettings()
            }
            MenuDivider {}
            ToggleRow {
                systemIcon: "wand.and.sparkles"
                title: view.panel.texts.cleanupTitle
                subtitle: view.panel.texts.cleanupSubtitle
                isOn: view.panel.aiCleanupEnabled
                onSwitched: on => view.panel.aiCleanupEnabled = on
            }
            NoteLine {
                visible: view.panel.languageModelAvailable && view.panel.aiCleanupEnabled
                systemIcon: "checkmark.circle.fill"
                tone: Theme.good
                text: view.panel.texts.cleanupUsing
            }
            NoteLine {
                visible: !view.panel.languageModelAvailable
                systemIcon: "info.circle"
                text: view.panel.texts.aiOffHint
            }
            NoteButton {
                visible: !view.panel.languageModelAvailable
                systemIcon: "exclamationmark.triangle.fill"
                text: view.panel.texts.aiOff
                onClicked: view.panel.openLanguageModelSettings()
            }
            MenuDivider {}
            StatsCard { store: view.panel }
            MenuDivider {}
            SimpleMenuItem {
                systemIcon: "gearshape"
                label: view.panel.texts.settings
                shortcut: view.panel.texts.settingsShortcut
                onClicked: view.panel.openSettings()
            }
            SimpleMenuItem {
                systemIcon: "arrow.down.circle"
                label: view.panel.texts.checkForUpdates
                onClicked: view.panel.checkForUpdates()
            }
            SimpleMenuItem {
                systemIcon: "xmark"
                label: view.panel.texts.quit
                shortcut: view.panel.texts.quitShortcut
                onClicked: view.panel.quit()
            }
        }
    }

    // The arrow keys begin at the first line.
    focus: true
    Keys.onDownPressed: view.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: view.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
}
