// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The panel at the item in the tray.
FocusScope {
    id: view

    required property MenuPanelModel panel
    readonly property int fittingHeight: Math.ceil(content.implicitHeight) + 2 * Theme.spacingSmall

    /// What lies over the content goes before the panel itself does; false when there is nothing.
    function closeWhatIsOpen() {
        const wasOpen = picker.listOpen
        picker.close(Qt.PopupFocusReason)
        return wasOpen
    }

    implicitWidth: 300
    Accessible.role: Accessible.Pane
    Accessible.name: panel.statusTitle

    Shortcut {
        sequence: "Ctrl+,"
        onActivated: view.panel.openSettings()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: view.panel.quit()
    }

    Shadow {
        anchors.fill: parent
        visible: Theme.translucent
        color: Theme.shadow
        radius: Theme.radius
    }
    Surface {
        anchors.fill: parent
        color: Theme.overlayOpaque
        outline: Theme.overlayOutline
    }

    Flickable {
        id: pages

        // A row that gets the keyboard comes into sight.
        readonly property Item focused: view.Window.activeFocusItem
        onFocusedChanged: {
            let inside = focused
            while (inside && inside !== content)
                inside = inside.parent
            if (!inside || !interactive)
                return
            const top = focused.mapToItem(content, 0, 0).y
            contentY = Math.max(Math.min(contentY, top), top + focused.height - height)
        }

        anchors { fill: parent; margins: Theme.spacingSmall }
        contentHeight: content.implicitHeight
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive

        Column {
            id: content
            width: pages.width

            ReadinessBanner {
                width: parent.width
                readiness: view.panel
                visible: view.panel.bannerTitle !== ""
            }
            MenuDivider {
                width: parent.width
                inset: Theme.spacingSmall
                visible: view.panel.bannerTitle !== ""
            }
            StatusHeader {
                width: parent.width
                panel: view.panel
            }
            MenuDivider {
                width: parent.width
                inset: Theme.spacingSmall
            }
            LanguagePickerRow {
                id: picker
                width: parent.width
                floatIn: view
                systemIcon: "globe"
                title: view.panel.texts.translateTo
                items: view.panel.targetLanguages
                currentDisplay: view.panel.targetLanguages.currentDisplay
                searchText: view.panel.texts.searchLanguages
                emptyText: view.panel.texts.noLanguage
                footerText: view.panel.languageModel.footer
                footerIsWarning: view.panel.languageModel.footerIsWarning
                footerActs: view.panel.languageModel.footerActs
                footerHelpText: view.panel.languageModel.footerHelp
                trailingShortcut: view.panel.toggleShortcut
                shortcutHelp: view.panel.texts.toggleHelp
                onSelect: index => view.panel.targetLanguages.select(index)
                onFooterAction: view.panel.openLanguageModelSettings()
            }
            MenuDivider {
                width: parent.width
                inset: Theme.spacingSmall
            }
            ToggleRow {
                width: parent.width
                systemIcon: "wand.and.sparkles"
                title: view.panel.aiCleanup.title
                subtitle: view.panel.aiCleanup.subtitle
                isOn: view.panel.aiCleanup.isOn
                onSwitched: on => view.panel.aiCleanup.set(on)
            }
            NoteLine {
                width: parent.width
                inset: Theme.spacingSmall
                visible: text !== ""
                systemIcon: view.panel.languageModel.isInUse ? "checkmark.circle.fill" : "info.circle"
                tone: view.panel.languageModel.isInUse ? Theme.good : Theme.textSecondary
                text: view.panel.languageModel.remark
            }
            NoteButton {
                width: parent.width
                visible: text !== ""
                systemIcon: "exclamationmark.triangle.fill"
                text: view.panel.languageModel.cure
                onClicked: view.panel.openLanguageModelSettings()
            }
            MenuDivider {
                width: parent.width
                inset: Theme.spacingSmall
            }
            StatsCard {
                width: parent.width
                store: view.panel
            }
            MenuDivider {
                width: parent.width
                inset: Theme.spacingSmall
            }
            SimpleMenuItem {
                width: parent.width
                systemIcon: "gearshape"
                label: view.panel.texts.settings
                shortcut: view.panel.texts.settingsShortcut
                onClicked: view.panel.openSettings()
            }
            SimpleMenuItem {
                width: parent.width
                systemIcon: "arrow.down.circle"
                label: busy ? view.panel.texts.checkingForUpdates : view.panel.texts.checkForUpdates
                muted: busy
                busy: view.panel.isCheckingForUpdates
                onClicked: view.panel.checkForUpdates()
            }
            SimpleMenuItem {
                width: parent.width
                systemIcon: "xmark"
                label: view.panel.texts.quit
                shortcut: view.panel.texts.quitShortcut
                onClicked: view.panel.quit()
            }
        }
    }

    ScrollMark {
        view: pages
        anchors { right: parent.right; rightMargin: 3 }
    }

    // The arrow keys begin at the first line.
    focus: true
    Keys.onDownPressed: view.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: view.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
}
