// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The key that is held.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    readonly property HotkeyChoiceModel hotkey: wizard.hotkey
    readonly property string refusal: hotkey.recorder ? hotkey.recorder.refusal : ""
    readonly property string boundChord: hotkey.recorder ? hotkey.recorder.boundChord : ""
    readonly property string warning: boundChord !== "" ? boundChord : refusal !== "" ? refusal : hotkey.fnWarning

    Column {
        x: 48
        y: 36
        width: parent.width - 96
        spacing: Theme.spacingSmall

        StepHeading {
            width: parent.width
            bottomPadding: Theme.spacingSmall
            title: step.hotkey.title
            body: step.hotkey.body
        }
        Repeater {
            model: step.hotkey.presets

            // qmllint disable unqualified
            HotkeyRow {
                required property var modelData

                width: parent.width
                label: modelData.label
                desc: modelData.desc
                keys: modelData.keys
                badge: modelData.recommended ? step.hotkey.recommendedText : ""
                selected: step.hotkey.selectedId === modelData.id
                onClicked: step.hotkey.choose(modelData.id)
            }
            // qmllint enable unqualified
        }
        HotkeyRow {
            id: custom
            width: parent.width
            visible: step.hotkey.recorder || selected
            label: step.hotkey.customText
            desc: step.hotkey.customHint
            keys: step.hotkey.recorder || !selected ? [] : [step.hotkey.customKeys]
            selected: step.hotkey.selectedId === "custom"
            holdsField: step.hotkey.recorder
            onClicked: {
                if (field.item)
                    (field.item as HotkeyRecorder).record()
            }
            trailing: Loader {
                id: field
                width: item ? Math.max(216, (item as HotkeyRecorder).fieldWidth) : 0
                active: step.hotkey.recorder
                // qmllint disable unqualified
                sourceComponent: HotkeyRecorder {
                    recorder: step.hotkey.recorder
                    label: custom.label
                    showsShortcut: custom.selected
                    invites: false
                    showsRefusal: false
                    onTint: custom.selected
                }
                // qmllint enable unqualified
            }
        }
        HotkeyWarning {
            width: parent.width
            visible: text !== ""
            text: step.warning
            action: step.warning === step.hotkey.fnWarning ? step.hotkey.fnSettingsText : ""
            onClicked: step.hotkey.openKeyboardSettings()
        }
    }
}
