// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// A row with a switch; all of it can be clicked. It shows what the setting is, not what was clicked.
/// Of its own type, since before Qt 6.5 screen readers are told that, and of a mere button nothing else.
T.CheckBox {
    id: control

    required property SwitchRow setting
    property bool first: false

    visible: setting.isShown
    enabled: setting.isEnabled
    width: parent?.width ?? 0
    implicitHeight: contentItem.implicitHeight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    text: setting.title
    checked: setting.isOn
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.description: setting.problem !== "" ? setting.problem : setting.subtitle
    Accessible.onPressAction: control.clicked()
    Accessible.onToggleAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()
    onClicked: {
        setting.set(!setting.isOn)
        checked = Qt.binding(() => setting.isOn)
    }

    contentItem: SettingsRow {
        title: control.setting.title
        subtitle: control.setting.subtitle
        problem: control.setting.problem
        available: control.enabled
        first: control.first

        PillSwitch {
            on: control.setting.isOn
            opacity: control.enabled ? 1 : 0.5

            FocusRing {
                anchors.margins: -4
                radius: height / 2
                shown: control.visualFocus
            }
        }
    }
}
