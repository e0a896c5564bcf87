// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The settings: the sections at the side, and one of them beside it.
FocusScope {
    id: view

    required property SettingsModel settings
    readonly property ThirdPartyLicences licences: settings.about.thirdParties
    readonly property var pages: ({ general: general, hotkey: hotkey, language: language, ai: ai, privacy: privacy })

    /// The keyboard is at the section that is shown.
    function takeKeyboard() {
        sidebar.takeKeyboard()
    }

    Accessible.role: Accessible.Pane
    Accessible.name: settings.windowTitle

    Shortcut {
        sequences: ["Ctrl+W"]
        onActivated: view.Window.window.close()
    }
    Shortcut {
        sequences: ["Escape"]
        onActivated: {
            if (view.licences.isOpen)
                view.licences.close()
            else
                view.Window.window.close()
        }
    }
    Shortcut {
        sequences: ["Alt+Left"]
        enabled: view.licences.isOpen
        onActivated: view.licences.close()
    }
    Shortcut {
        sequences: ["Ctrl+PgDown", "Ctrl+Tab"]
        onActivated: sidebar.go(1)
    }
    Shortcut {
        sequences: ["Ctrl+PgUp", "Ctrl+Shift+Tab"]
        onActivated: sidebar.go(-1)
    }

    Plane {
        anchors.fill: parent
        color: Theme.window
    }
    SettingsSidebar {
        id: sidebar
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        settings: view.settings
    }
    Plane {
        anchors { left: sidebar.right; top: parent.top; bottom: parent.bottom }
        width: 1
        color: Theme.separator
    }
    Loader {
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        sourceComponent: view.licences.isOpen ? licence : view.settings.showsAbout ? about : view.pages[view.settings.section]
        // What had the keyboard is gone, or is the section of before.
        onLoaded: {
            // qmllint disable
            if (item.wantsKeyboard ?? false)
                item.takeKeyboard()
            // qmllint enable
            else if (activeFocus || sidebar.activeFocus)
                sidebar.takeKeyboard()
        }
    }

    // qmllint disable unqualified
    Component { id: general; GeneralSection { settings: view.settings } }
    Component { id: hotkey; HotkeySection { settings: view.settings } }
    Component { id: language; LanguageSection { settings: view.settings } }
    Component { id: ai; CleanupSection { settings: view.settings } }
    Component { id: privacy; PrivacySection { settings: view.settings } }
    Component { id: about; AboutSection { settings: view.settings } }
    Component { id: licence; LicencePage { licences: view.licences } }
    // qmllint enable unqualified
}
