// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Where Talvera works: one application after the other has a sentence dictated into it.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    property int active: 0
    property int shown: 1 ///< samples so far
    readonly property bool lively: moves && shown <= 2 * samples.length // left open it comes to rest
    readonly property var samples: wizard.samples
    readonly property var tints: Theme.dark ? ["#8fd6a5", "#f3a6c8", "#8ec5ff", "#ffd479", "#ffab8f", "#9d9bff"]
                                            : ["#1c7a44", "#b02a6b", "#1765ad", "#8a5a00", "#b3401a", "#4a42d4"]

    StepHeading {
        id: heading
        x: 48
        y: 36
        width: parent.width - 96
        title: step.wizard.texts.everywhereTitle
        body: step.wizard.texts.everywhereBody
    }
    MockWindow {
        id: mock
        anchors { top: heading.bottom; topMargin: 24; bottom: apps.top; bottomMargin: 20 }
        anchors { left: parent.left; right: parent.right; leftMargin: 48; rightMargin: 48 }
        systemIcon: step.samples[step.active].icon
        name: step.samples[step.active].name
        sample: step.samples[step.active].sample
        mono: step.samples[step.active].mono
        tint: step.tints[step.active]
        recordingText: step.wizard.texts.everywhereRecording
        moves: step.lively
        Accessible.role: Accessible.StaticText
        Accessible.name: name
        Accessible.description: sample
    }
    Row {
        id: apps
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 20 }
        spacing: 4

        Repeater {
            model: step.samples

            // qmllint disable unqualified
            Item {
                id: app

                required property int index
                required property var modelData
                readonly property bool isActive: index === step.active

                width: 104
                height: 60
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.name

                Plane {
                    id: disc
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 36
                    height: 36
                    radius: Theme.radiusMedium
                    color: app.isActive ? Theme.accentFill : Theme.fill
                    outlineWidth: app.isActive ? 2 : 0
                    outline: Theme.accent

                    Symbol {
                        anchors.centerIn: parent
                        name: app.modelData.icon
                        size: 18
                        color: app.isActive ? step.tints[app.index] : Theme.textSecondary
                    }
                }
                Caption {
                    anchors { horizontalCenter: parent.horizontalCenter; top: disc.bottom; topMargin: 4 }
                    text: app.modelData.name
                    color: app.isActive ? Theme.text : Theme.textSecondary
                    font.weight: app.isActive ? Theme.weightMedium : Theme.weightBody
                }
            }
            // qmllint enable unqualified
        }
    }
    Timer {
        interval: 1600 // to read what was typed
        running: step.lively && mock.done
        onTriggered: {
            step.shown += 1
            if (step.lively)
                step.active = (step.active + 1) % step.samples.length
        }
    }
}
