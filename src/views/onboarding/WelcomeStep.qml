// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What Talvera is.
FocusScope {
    id: step

    required property OnboardingModel wizard
    property bool moves: false
    property int rounds: 0 ///< so often it has said its sentence
    readonly property bool lively: moves && rounds < 6 // a wizard that is left open comes to rest

    Column {
        id: words
        x: 48
        anchors.verticalCenter: parent.verticalCenter
        width: 344
        spacing: 20

        Pill {
            systemIcon: "waveform"
            text: step.wizard.texts.welcomePill
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Column {
            width: parent.width
            spacing: 0
            Accessible.role: Accessible.Heading
            Accessible.name: speak.text + " " + type.text

            Label {
                id: speak
                width: parent.width
                text: step.wizard.texts.headlineSpeak
                font.pixelSize: Theme.sizeHero
                font.weight: Font.Bold
                font.letterSpacing: -1
            }
            Label {
                id: type
                width: parent.width
                text: step.wizard.texts.headlineType
                font: speak.font
                color: Theme.accent
            }
        }
        Label {
            width: parent.width
            text: step.wizard.texts.welcomeBody
            color: Theme.textSecondary
            font.pixelSize: Theme.sizeTitle
            lineHeight: 1.25
            wrapMode: Text.Wrap
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Column {
            topPadding: Theme.spacingSmall
            spacing: Theme.spacing

            FeatureBullet {
                systemIcon: "bolt.fill"
                text: step.wizard.texts.featureFaster
            }
            FeatureBullet {
                systemIcon: "lock.fill"
                text: step.wizard.texts.featureOnDevice
            }
            FeatureBullet {
                systemIcon: "globe"
                text: step.wizard.texts.featureLanguages
            }
        }
    }

    // Speech goes in, and text comes out.
    Plane {
        anchors { right: parent.right; rightMargin: 48; verticalCenter: parent.verticalCenter }
        width: 272
        height: 392
        radius: 20
        color: Theme.accentFill

        PulseRing {
            anchors.centerIn: orb
            visible: step.lively
            color: Theme.accent
            from: orb.width
            to: orb.width * 1.8
        }
        Plane {
            id: orb
            anchors.horizontalCenter: parent.horizontalCenter
            y: 64
            width: 88
            height: 88
            radius: 44
            color: Theme.accent

            Symbol {
                anchors.centerIn: parent
                name: "mic.fill"
                size: 40
                color: Theme.textOnAccent
            }
        }
        WaveBars {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 188
            barCount: 28
            animating: step.lively
            level: 0.8
        }
        Surface {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.spacingLarge }
            height: 132

            Typewriter {
                id: sample
                anchors { fill: parent; margins: Theme.spacingLarge }
                types: step.lively
                text: step.wizard.samples[3].sample
                font.pixelSize: Theme.sizeTitle
                pace: 45
            }
        }
    }
    // It says it again, after a while.
    Timer {
        interval: 4000
        running: step.lively && sample.done
        onTriggered: {
            step.rounds += 1
            if (step.lively)
                sample.restart()
        }
    }
}
