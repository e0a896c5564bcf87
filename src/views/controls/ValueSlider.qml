// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A number along a line, changed by the pointer, the keyboard and screen readers. It shows what the setting is, at an end
/// of the line where that lies beyond.
T.Slider {
    id: slider

    property string label
    property string help
    property real shownValue: 0
    property bool made: false
    /// As thick as leaves the same above and below it within the knob, in whole pixels.
    readonly property real thickness: {
        const ratio = Screen.devicePixelRatio
        const knob = Math.round(16 * ratio)
        const wanted = Math.round(4 * ratio)
        return (wanted - (knob - wanted) % 2) / ratio
    }
    readonly property real minimumValue: from ///< as screen readers ask for it
    readonly property real maximumValue: to

    signal movedTo(real value)

    implicitWidth: 160
    implicitHeight: 32
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    snapMode: T.Slider.SnapAlways
    value: shownValue
    Accessible.name: label
    Accessible.description: help
    onShownValueChanged: value = shownValue
    onValueChanged: {
        if (made && value !== Math.max(from, Math.min(shownValue, to)))
            movedTo(value)
    }
    Component.onCompleted: made = true
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Home)
            movedTo(from)
        else if (event.key === Qt.Key_End)
            movedTo(to)
        else if (event.key === Qt.Key_PageUp)
            movedTo(value + 10 * stepSize)
        else if (event.key === Qt.Key_PageDown)
            movedTo(value - 10 * stepSize)
        else
            event.accepted = false
    }

    background: Plane {
        x: slider.leftPadding
        y: (slider.height - height) / 2
        width: slider.availableWidth
        height: slider.thickness
        radius: height / 2
        color: Theme.mark

        Plane {
            width: Math.round(slider.visualPosition * parent.width)
            height: parent.height
            radius: height / 2
            color: Theme.accent
        }
    }
    handle: Plane {
        x: Math.round(slider.leftPadding + slider.visualPosition * (slider.availableWidth - width))
        y: (slider.height - height) / 2
        implicitWidth: 16
        implicitHeight: 16
        radius: 8
        color: slider.pressed ? Theme.accentPressed : slider.hovered ? Theme.accentHovered : Theme.accent

        FocusRing {
            anchors.margins: -4
            radius: 12
            shown: slider.visualFocus
        }
    }
}
