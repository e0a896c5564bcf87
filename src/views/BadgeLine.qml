// SPDX-License-Identifier: MIT
import QtQuick

/// A badge and a text that may take up to three lines.
HUDContent {
    id: content

    property string line
    default property alias badge: badge.data

    implicitWidth: Theme.spacingLarge + badge.width + Theme.spacing + label.width + Theme.spacingHuge
    implicitHeight: Math.max(52, label.height + 2 * 10)

    // What fades out keeps its words, though the state has others already.
    onLineChanged: label.take()
    onShownChanged: label.take()

    Item {
        id: badge
        x: Theme.spacingLarge
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
    }
    Label {
        id: label

        function take() {
            if (content.shown)
                text = content.line;
        }

        anchors.left: badge.right
        anchors.leftMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(Math.ceil(implicitWidth), 380)
        font.pixelSize: Theme.sizeGlance
        font.weight: Theme.weightMedium
        wrapMode: Text.Wrap
        maximumLineCount: 3
    }
}
