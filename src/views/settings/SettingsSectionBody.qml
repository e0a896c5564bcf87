// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A section: its head, and what is to be set below it. What has the keyboard comes into sight.
Item {
    id: body

    property string title
    property string subtitle
    default property alias rows: below.data
    readonly property Item focused: Window.activeFocusItem

    onFocusedChanged: {
        let inside = focused
        while (inside && inside !== content)
            inside = inside.parent
        if (!inside || !pages.interactive)
            return
        const around = Theme.spacingLarge
        const top = focused.mapToItem(content, 0, 0).y
        const lowest = Math.max(0, pages.contentHeight - pages.height)
        pages.contentY = Math.min(lowest, Math.max(Math.min(pages.contentY, Math.max(0, top - around)),
                                                   top + focused.height + around - pages.height))
    }

    Flickable {
        id: pages
        anchors.fill: parent
        contentHeight: content.height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Item {
            id: content
            width: pages.width
            height: column.implicitHeight + 2 * Theme.spacingHuge

            Column {
                id: column

                readonly property real sides: Math.max(Theme.spacingHuge, 4 * Math.round((pages.width - 720) / 8))

                x: sides
                y: Theme.spacingHuge
                width: pages.width - 2 * sides
                spacing: Theme.spacingSmall

                Label {
                    width: parent.width
                    text: body.title
                    font.pixelSize: Theme.sizeLarge
                    strong: true
                    wrapMode: Text.Wrap
                    Accessible.ignored: false
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                Caption {
                    width: parent.width
                    bottomPadding: Theme.spacingSmall
                    text: body.subtitle
                    wrapMode: Text.Wrap
                    Accessible.ignored: false
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Column {
                    id: below
                    width: parent.width
                    spacing: Theme.spacing
                }
            }
        }
    }
    ScrollMark {
        view: pages
        anchors { right: parent.right; rightMargin: 3 }
    }
}
