// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What dictation has brought in the last seven days: two figures side by side.
Plane {
    id: card

    required property MenuPanelModel store

    implicitHeight: 60
    radius: Theme.radiusSmall
    color: Theme.fill

    component Figure: Item {
        property alias caption: name.text
        property alias figure: number.text
        property string spoken

        anchors.verticalCenter: parent ? parent.verticalCenter : undefined
        height: lines.height
        Accessible.role: Accessible.StaticText
        Accessible.name: spoken + ": " + figure

        Column {
            id: lines
            width: parent.width

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
        Tip { text: parent.spoken }
    }

    Figure {
        x: Theme.spacingSmall
        width: card.width / 2 - x - Theme.spacingSmall
        caption: card.store.texts.thisWeek
        figure: card.store.timeSaved
        spoken: card.store.texts.thisWeekSpoken
    }
    Plane {
        anchors.centerIn: parent
        width: 1
        height: 32
        color: Theme.hairline
    }
    Figure {
        x: card.width / 2 + Theme.spacing
        width: card.width / 2 - Theme.spacing - Theme.spacingSmall
        caption: card.store.dictationsCaption
        figure: card.store.dictations
        spoken: card.store.texts.dictationsSpoken
    }
}
