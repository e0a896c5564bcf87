// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A row whose control opens a list of what can be chosen.
SettingsRow {
    id: row

    required property ChoiceRow setting
    property alias leastWidth: select.leastWidth
    property bool shortens: false ///< the options may be of any length, since they are no words of ours
    property alias fitsAll: select.fitsAll

    visible: setting.isShown
    title: setting.title
    subtitle: setting.subtitle
    available: setting.isEnabled

    Select {
        id: select
        width: row.shortens ? Math.min(implicitWidth, row.width - row.indent - 2 * Theme.spacingLarge) : implicitWidth
        enabled: row.setting.isEnabled
        label: row.setting.title
        help: row.setting.subtitle
        options: row.setting.options
        current: row.setting.current
        onChosen: index => row.setting.choose(index)
    }
}
