// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What Talvera is doing, and what to do next.
Item {
    id: header

    required property MenuPanelModel panel
    readonly property bool failed: panel.state === "error"
    readonly property bool namesKey: panel.statusKeyCap !== ""

    implicitHeight: Math.max(orb.height, words.implicitHeight) + 2 * Theme.spacingSmall
    Accessible.role: Accessible.StaticText
    Accessible.name: panel.statusTitle
    Accessible.description: panel.statusSubtitle + " " + panel.statusKeyCap

    StatusOrb {
        id: orb
        x: 2
        anchors { verticalCenter: words.top; verticalCenterOffset: title.height / 2 }
        state: header.panel.state
        isReady: header.panel.isReady
        label: header.panel.orbLabel
    }
    Column {
        id: words
        x: Theme.spacingSmall + Theme.iconColumn
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
        Item {
            width: parent.width
            // As high without a key as with one, so that what lies below stays where it is when a dictation begins.
            implicitHeight: Math.max(20, line.implicitHeight)

            Flow {
                id: line
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
                    width: header.namesKey ? Math.min(implicitWidth, words.width)
                                           : words.width - (header.failed ? 20 : 0)
                    topPadding: 2 // in the middle of the key beside it
                    text: header.panel.statusSubtitle
                    color: header.failed ? Theme.warn : Theme.textSecondary
                    wrapMode: header.namesKey ? Text.NoWrap : Text.Wrap
                }
                KbdCap {
                    visible: header.namesKey
                    text: header.panel.statusKeyCap
                    width: Math.min(implicitWidth, words.width)
                }
            }
        }
    }
}
