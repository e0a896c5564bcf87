// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What Talvera needs of the session, and whether it has it.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    readonly property PermissionsModel permissions: wizard.permissions

    Column {
        x: 48
        y: 20
        width: parent.width - 96
        spacing: Theme.spacingSmall

        Pill {
            text: step.permissions.pill
            systemIcon: step.permissions.allSet ? "checkmark.circle.fill" : ""
            tone: step.permissions.allSet ? Theme.good : Theme.accent
            color: step.permissions.allSet ? Theme.goodFill : Theme.accentFill
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        StepHeading {
            width: parent.width
            bottomPadding: 4
            title: step.permissions.title
            body: step.permissions.body
        }
        BenefitPermissionCard {
            width: parent.width
            permission: step.permissions.microphone
            onAllow: step.permissions.allowMicrophone()
        }
        BenefitPermissionCard {
            width: parent.width
            permission: step.permissions.accessibility
            onAllow: step.permissions.allowAccessibility()
        }
        NoteLine {
            width: parent.width
            systemIcon: step.permissions.allSet ? "checkmark.circle.fill" : "info.circle"
            tone: step.permissions.allSet ? Theme.good : Theme.textSecondary
            text: step.wizard.advice !== "" ? step.wizard.advice : step.permissions.footer
        }
    }
}
