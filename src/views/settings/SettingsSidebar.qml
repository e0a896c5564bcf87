// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The sections, and "About" at the foot. The arrow keys go from one to the next and show it.
FocusScope {
    id: sidebar

    required property SettingsModel settings
    readonly property int count: settings.sections.length + 1 ///< with "About"
    readonly property real widest: {
        let width = about.implicitWidth
        for (let index = 0; index < sections.count; ++index)
            width = Math.max(width, sections.itemAt(index)?.implicitWidth ?? 0)
        return width
    }

    implicitWidth: Math.max(200, 4 * Math.ceil((widest + 2 * Theme.spacing) / 4)) // whole pixels at every scale

    function itemAt(index) {
        return index < count - 1 ? sections.itemAt(index) : about
    }
    function currentIndex() {
        for (let index = 0; index < count - 1; ++index) {
            if (settings.sections[index].id === settings.section)
                return index
        }
        return count - 1
    }
    /// So many sections on; at an end it stays.
    function go(steps) {
        const item = itemAt(Math.max(0, Math.min(currentIndex() + steps, count - 1)))
        item.forceActiveFocus(Qt.TabFocusReason)
        item.clicked()
    }
    function takeKeyboard() {
        itemAt(currentIndex()).forceActiveFocus(Qt.OtherFocusReason)
    }

    Accessible.role: Accessible.PageTabList
    Accessible.name: settings.windowTitle
    Keys.onDownPressed: go(1)
    Keys.onUpPressed: go(-1)

    Column {
        id: column
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.spacing; topMargin: Theme.spacingLarge }
        spacing: 2

        Repeater {
            id: sections
            model: sidebar.settings.sections

            // qmllint disable unqualified
            SettingsSidebarItem {
                required property var modelData

                width: column.width
                systemIcon: modelData.icon
                text: modelData.title
                selected: sidebar.settings.section === modelData.id
                onClicked: sidebar.settings.select(modelData.id)
            }
            // qmllint enable unqualified
        }
    }
    SettingsSidebarItem {
        id: about
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.spacing }
        systemIcon: "info.circle"
        text: sidebar.settings.about.title
        selected: sidebar.settings.showsAbout
        onClicked: sidebar.settings.selectAbout()
    }
}
