// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A row with a number to be drawn along a line.
SettingsRow {
    id: row

    required property SliderRow setting

    visible: setting.isShown
    title: setting.title
    subtitle: setting.subtitle
    available: setting.isEnabled

    Row {
        spacing: Theme.spacing

        Label {
            width: Math.max(72, implicitWidth)
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignRight
            text: row.setting.valueText
        }
        ValueSlider {
            width: 200
            label: row.setting.title
            help: row.setting.valueText
            from: row.setting.from
            to: row.setting.to
            stepSize: row.setting.step
            shownValue: row.setting.value
            onMovedTo: value => row.setting.setValue(value)
        }
    }
}
