// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Text to be read, never mark-up: what it shows may come from other programs.
Text {
    property bool strong: false

    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.sizeBody
    font.weight: strong ? Theme.weightStrong : Theme.weightBody
    textFormat: Text.PlainText
    elide: Text.ElideRight
    Accessible.ignored: true // the control or the window that it belongs to speaks for it
}
