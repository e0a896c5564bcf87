// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A field that shows a shortcut and records another one. Below it stands why the one that is set doesn't act, and while
/// another one is recorded what a chord does that can't be had.
Column {
    id: control

    required property HotkeyRecorderModel recorder
    property string label              ///< what the shortcut is for, as screen readers say it
    property string absent             ///< what stands there when no shortcut is set
    property bool showsShortcut: true  ///< else the field only invites to record
    property bool invites: true        ///< says beside the shortcut, too, how another one is recorded
    property bool showsRefusal: true   ///< else whoever uses the field shows what would stand below it
    property bool onTint: false        ///< stands on a colour on which the usual one of fields isn't seen

    readonly property bool isRecording: recorder.isRecording
    readonly property bool isBoundChordSaid: recorder.boundChord !== ""
    readonly property real fieldWidth: field.implicitWidth ///< that its words take

    function record() {
        field.record()
    }

    spacing: Theme.spacingTiny

    RecorderItem {
        id: field

        readonly property bool hasCaps: control.showsShortcut && control.recorder.shortcut !== ""
        /// Of what it says without a shortcut and while it records: neither makes it wider.
        readonly property real roomForWords: Math.max(
            metrics.advanceWidth(control.recorder.armedPrompt),
            metrics.advanceWidth(control.recorder.idlePrompt)
                + (control.absent !== "" ? metrics.advanceWidth(control.absent) + words.spacing : 0))

        recorder: control.recorder
        width: parent.width
        implicitWidth: 4 * Math.ceil((Math.max(words.implicitWidth, roomForWords) + 2 * Theme.spacing) / 4)
        implicitHeight: 32

        Accessible.role: Accessible.Button
        Accessible.name: recorder.isArmed ? recorder.prompt : control.label
        Accessible.description: recorder.boundChord !== "" ? recorder.boundChord
                              : hasCaps ? recorder.shortcut : control.absent
        Accessible.focusable: true
        Accessible.focused: activeFocus
        Accessible.checkable: true
        Accessible.checked: recorder.isArmed
        Accessible.onPressAction: field.record()
        Accessible.onToggleAction: field.record()

        Plane {
            anchors.fill: parent
            radius: Theme.radiusSmall
            color: field.recorder.isArmed ? Qt.alpha(Theme.accent, 0.3) : pointer.hovered ? Theme.fillHovered
                 : control.onTint ? Theme.surface : Theme.fill
            outlineWidth: 1
            outline: field.recorder.isArmed ? Theme.accent : Theme.mark
        }
        Row {
            id: words
            anchors.centerIn: parent
            spacing: Theme.spacingSmall

            Row {
                anchors.verticalCenter: parent.verticalCenter
                visible: field.hasCaps && !field.recorder.isArmed
                spacing: Theme.spacingTiny

                Repeater {
                    model: field.recorder.keyCaps

                    // qmllint disable unqualified
                    KbdCap {
                        required property string modelData

                        text: modelData
                        color: control.onTint ? Theme.fill : Theme.surface
                    }
                    // qmllint enable unqualified
                }
            }
            Caption {
                anchors.verticalCenter: parent.verticalCenter
                visible: !field.hasCaps && control.absent !== "" && !field.recorder.isArmed
                text: control.absent
                color: Theme.text
            }
            Caption {
                id: prompt
                anchors.verticalCenter: parent.verticalCenter
                visible: control.invites || !field.hasCaps || field.recorder.isArmed
                text: field.recorder.prompt
                color: field.recorder.isArmed ? Theme.text : Theme.textSecondary
            }
        }
        FocusRing {
            radius: Theme.radiusSmall
            shown: field.visualFocus
        }
        HoverHandler {
            id: pointer
        }
        FontMetrics {
            id: metrics
            font: prompt.font
        }
    }
    NoteLine {
        width: parent.width
        visible: control.showsRefusal && text !== ""
        systemIcon: control.isBoundChordSaid ? "info.circle.fill" : "exclamationmark.triangle.fill"
        tone: control.isBoundChordSaid ? Theme.textSecondary : Theme.warn
        column: 20
        text: control.isBoundChordSaid ? control.recorder.boundChord : control.recorder.refusal
    }
}
