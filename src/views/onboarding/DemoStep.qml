// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The first dictation.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    readonly property DemoModel demo: wizard.demo
    readonly property PermissionsModel permissions: wizard.permissions

    Column {
        id: heading
        x: 48
        y: 36
        width: parent.width - 96
        spacing: Theme.spacingSmall

        StepHeading {
            width: parent.width
            title: step.demo.title
            body: step.demo.canRun ? "" : step.demo.missingBody
        }
        KeyedText {
            width: parent.width
            visible: step.demo.canRun
            before: step.demo.bodyBefore
            key: step.demo.hotkey
            after: step.demo.bodyAfter
        }
    }
    DemoOutput {
        anchors { left: parent.left; right: parent.right; leftMargin: 48; rightMargin: 48 }
        anchors { top: heading.bottom; topMargin: 24; bottom: hold.top; bottomMargin: 24 }
        visible: step.demo.canRun
        demo: step.demo
        moves: step.moves
    }
    HoldButton {
        id: hold
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 28 }
        visible: step.demo.canRun
        recording: step.demo.state === "recording"
        done: step.demo.transcript !== ""
        waits: step.demo.state === "transcribing"
        caption: step.demo.caption
        hotkeyLabel: step.demo.hotkey
        level: step.demo.level
        moves: step.moves
        onPress: step.demo.pressStart()
        onRelease: step.demo.pressEnd()
    }
    Column {
        anchors { left: parent.left; right: parent.right; leftMargin: 48; rightMargin: 48 }
        anchors { top: heading.bottom; topMargin: 24 }
        visible: !step.demo.canRun
        spacing: Theme.spacing

        BenefitPermissionCard {
            width: parent.width
            visible: permission.state !== "granted"
            permission: step.permissions.missingMicrophone
            onAllow: step.permissions.allowMicrophone()
        }
        BenefitPermissionCard {
            width: parent.width
            visible: permission.state !== "granted"
            permission: step.permissions.missingAccessibility
            onAllow: step.permissions.allowAccessibility()
        }
        NoteLine {
            width: parent.width
            visible: text !== ""
            systemIcon: "info.circle"
            text: step.wizard.advice
        }
    }
}
