// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What dictation has brought in the last seven days: two figures side by side.
Rectangle {
    id: card

    property var store

    implicitWidth: parent ? parent.width : 0
    implicitHeight: 60
    radius: Theme.radius
    color: Theme.fill

    component Figure: Column {
        property alias caption: name.text
        property alias figure: number.text

        anchors.verticalCenter: parent.verticalCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: caption + ": " + figure

        Label {
            id: number
            width: parent.width
            font.pixelSize: Theme.sizeLarge
            font.weight: Theme.weightStrong
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.sizeSmall
            height: 24
            verticalAlignment: Text.AlignVCenter
        }
        Caption {
            id: name
            width: parent.width
            font { pixelSize: Theme.sizeCaps; weight: Theme.weightMedium; letterSpacing: 0.4 }
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
        }
    }

    Figure {
        x: Theme.spacing
        width: card.width / 2 - Theme.spacing - Theme.spacingTiny
        caption: card.store.texts.thisWeek
        figure: card.store.timeSaved
    }
    Rectangle {
        anchors.centerIn: parent
        width: 1
        height: 32
        color: Theme.outline
    }
    Figure {
        x: card.width / 2 + Theme.spacing
        width: card.width / 2 - Theme.spacing - Theme.spacingTiny
        caption: card.store.texts.dictations
        figure: card.store.dictations
    }
}
