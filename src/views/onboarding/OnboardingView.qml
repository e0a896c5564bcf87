// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The wizard: one step at a time, and the way through them below.
FocusScope {
    id: view

    required property OnboardingModel wizard
    property bool moves: true ///< it can be seen, so what moves does so
    readonly property var steps: [welcome, everywhere, permissions, download, hotkey, demo]

    /// The keyboard is where the user most likely goes on.
    function takeKeyboard() {
        if (navigation.primary.enabled)
            navigation.primary.forceActiveFocus(Qt.OtherFocusReason)
        else
            page.forceActiveFocus(Qt.OtherFocusReason)
    }

    implicitWidth: 760
    implicitHeight: 580
    Accessible.role: Accessible.Pane
    Accessible.name: wizard.texts.windowTitle
    Keys.onReturnPressed: wizard.pressPrimary()
    Keys.onEnterPressed: wizard.pressPrimary()

    Shortcut {
        sequences: ["Alt+Left", "Back"]
        enabled: !view.wizard.asksToSkip
        onActivated: view.wizard.back()
    }

    Plane {
        anchors.fill: parent
        color: Theme.window
    }
    FocusScope {
        id: content
        anchors.fill: parent
        enabled: !view.wizard.asksToSkip

        Loader {
            id: page
            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: navigation.top }
            focus: true
            sourceComponent: view.steps[view.wizard.step]
        }
        NavigationRow {
            id: navigation
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            wizard: view.wizard
        }
    }
    Connections {
        target: view.wizard

        function onStepChanged() {
            if (!navigation.primary.activeFocus)
                view.takeKeyboard()
        }
        function onGateChanged() {
            // A button that can't be used gives the keyboard away, and gets it back when it can.
            if (navigation.primary.enabled && !view.Window.activeFocusItem)
                view.takeKeyboard()
        }
        function onQuestionChanged() {
            if (!view.wizard.asksToSkip)
                view.takeKeyboard()
        }
    }
    Loader {
        anchors.fill: parent
        active: view.wizard.asksToSkip
        focus: active
        sourceComponent: question
        onLoaded: forceActiveFocus(Qt.TabFocusReason)
    }

    // qmllint disable unqualified
    Component { id: welcome; WelcomeStep { wizard: view.wizard; moves: view.moves } }
    Component { id: everywhere; EverywhereStep { wizard: view.wizard; moves: view.moves } }
    Component { id: permissions; PermissionsStep { wizard: view.wizard; moves: view.moves } }
    Component { id: download; DownloadStep { wizard: view.wizard; moves: view.moves } }
    Component { id: hotkey; HotkeyStep { wizard: view.wizard; moves: view.moves } }
    Component { id: demo; DemoStep { wizard: view.wizard; moves: view.moves } }
    Component { id: question; SkipQuestion { wizard: view.wizard } }
    // qmllint enable unqualified
}
