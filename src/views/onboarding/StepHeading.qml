// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What a step is about.
Column {
    id: heading

    property string title
    property string body

    spacing: Theme.spacingSmall
    Accessible.role: Accessible.Heading
    Accessible.name: title
    Accessible.description: body

    Label {
        width: parent.width
        text: heading.title
        font.pixelSize: Theme.sizeHeading
        strong: true
        wrapMode: Text.Wrap
    }
    Label {
        width: parent.width
        visible: text !== ""
        text: heading.body
        color: Theme.textSecondary
        font.pixelSize: Theme.sizeTitle
        lineHeight: 1.15
        wrapMode: Text.Wrap
    }
}
