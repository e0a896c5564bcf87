// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What Talvera is doing, and what to do next.
Item {
    id: header

    property var panel
    readonly property bool failed: panel.state === "error"

    implicitWidth: parent ? parent.width : 0
    implicitHeight: Math.max(orb.height, words.implicitHeight) + 2 * Theme.spacingSmall
    Accessible.role: Accessible.StaticText
    Accessible.name: panel.statusTitle
    Accessible.description: panel.statusSubtitle + " " + panel.statusKeyCap

    StatusOrb {
        id: orb
        x: 2
        anchors { verticalCenter: words.top; verticalCenterOffset: title.height / 2 }
        phase: header.panel.state
        label: header.panel.orbLabel
    }
    Column {
        id: words
        x: 36
        y: Theme.spacingSmall
        width: header.width - x - Theme.spacingSmall
        spacing: 2

        Label {
            id: title
            width: parent.width
            text: header.panel.statusTitle
            font.pixelSize: Theme.sizeTitle
            strong: true
        }
        Flow {
            width: parent.width
            spacing: 6

            Symbol {
                visible: header.failed
                name: "exclamationmark.triangle.fill"
                color: Theme.warn
                size: 14
                height: 18
                fillMode: Image.PreserveAspectFit
            }
            Caption {
                width: header.panel.statusKeyCap ? Math.min(implicitWidth, words.width)
                                                 : words.width - (header.failed ? 20 : 0)
                topPadding: header.panel.statusKeyCap ? 2 : 0 // in the middle of the key beside it
                text: header.panel.statusSubtitle
                color: header.failed ? Theme.warn : Theme.textSecondary
                wrapMode: header.panel.statusKeyCap ? Text.NoWrap : Text.Wrap
            }
            KbdCap {
                visible: header.panel.statusKeyCap
                text: header.panel.statusKeyCap
                width: Math.min(implicitWidth, words.width)
            }
        }
    }
}
