// SPDX-License-Identifier: MIT
import QtQuick

/// A badge and a text that takes up to three lines, or one that is too long for them in four smaller ones.
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

        property int setting: 0 ///< 1: as much as the panel can hold

        function take() {
            if (!content.shown)
                return;
            setting = 0;
            text = content.line;
            if (truncated)
                setting = 1;
        }

        anchors.left: badge.right
        anchors.leftMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(Math.ceil(implicitWidth), 380)
        font.pixelSize: setting ? Theme.sizeBody : Theme.sizeGlance
        font.weight: Theme.weightMedium
        lineHeight: lineCount > 1 && !setting ? 1.08 : 1
        wrapMode: Text.Wrap
        maximumLineCount: setting ? 4 : 3
    }
}
