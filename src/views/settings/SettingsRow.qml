// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What there is to set, and its control at the end of the line, or below where the line is too short for it.
Item {
    id: row

    property string title
    property string subtitle
    property string problem    ///< why the last change failed
    property bool available: true
    property bool first: false ///< nothing stands above it in its card
    property int indent: 0     ///< further in than the row that it depends on
    default property Item control

    readonly property real controlWidth: control?.width ?? 0
    readonly property bool beside: controlWidth === 0 || inner.width - controlWidth - Theme.spacingHuge >= 160

    width: parent?.width ?? 0
    implicitHeight: inner.height + 2 * Theme.spacing
    height: implicitHeight
    onControlChanged: control.parent = slot

    RowDivider { visible: !row.first }
    Item {
        id: inner
        x: Theme.spacingLarge + row.indent
        y: Theme.spacing
        width: row.width - x - Theme.spacingLarge
        height: row.beside ? Math.max(words.implicitHeight, slot.height) : words.implicitHeight + Theme.spacingSmall + slot.height

        Column {
            id: words
            y: row.beside ? Math.max(0, Math.round((parent.height - implicitHeight) / 2)) : 0
            width: row.beside && row.controlWidth > 0 ? parent.width - row.controlWidth - Theme.spacingHuge : parent.width
            spacing: Theme.spacingTiny

            Label {
                width: parent.width
                text: row.title
                color: row.available ? Theme.text : Theme.textSecondary
                wrapMode: Text.Wrap
            }
            Caption {
                width: parent.width
                visible: text !== ""
                text: row.subtitle
                wrapMode: Text.Wrap
            }
            NoteLine {
                width: parent.width
                visible: text !== ""
                systemIcon: "exclamationmark.triangle.fill"
                tone: Theme.warn
                column: 20
                text: row.problem
                Accessible.role: Accessible.AlertMessage
            }
        }
        Item {
            id: slot
            x: row.beside ? parent.width - width : 0
            y: row.beside ? Math.round((parent.height - height) / 2) : words.implicitHeight + Theme.spacingSmall
            width: row.controlWidth
            height: row.control?.height ?? 0
        }
    }
}
