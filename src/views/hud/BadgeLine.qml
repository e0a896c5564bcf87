// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A badge and a text that takes up to three lines, or one that is too long for them in four smaller ones.
HUDContent {
    id: content

    property string line
    default property alias badge: badge.data

    contentWidth: Theme.spacingLarge + badge.width + Theme.spacing + label.width + Theme.spacingWide
    contentHeight: Math.max(56, label.height + 2 * 10)

    // What fades out keeps its words, though the state has others already.
    onLineChanged: label.take()
    onShownChanged: label.take()

    Item {
        id: badge
        x: content.inset + Theme.spacingLarge
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
    }
    Label {
        id: label

        property bool dense: false ///< as much as the panel can hold

        function take() {
            if (!content.shown)
                return;
            dense = false;
            lineHeight = 1;
            text = content.line;
            dense = truncated;
            if (lineCount > 1 && !dense)
                lineHeight = 1.08;
        }

        anchors.left: badge.right
        anchors.leftMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(Math.ceil(implicitWidth), 380)
        font.pixelSize: dense ? Theme.sizeBody : Theme.sizeGlance
        font.weight: Theme.weightMedium
        wrapMode: Text.Wrap
        maximumLineCount: dense ? 4 : 3
    }
}
