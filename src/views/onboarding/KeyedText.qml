// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A sentence with a key in it.
Flow {
    id: sentence

    property string before
    property string key
    property string after

    component Word: Label {
        required property string modelData

        height: 24
        text: modelData
        color: Theme.textSecondary
        font.pixelSize: Theme.sizeTitle
        verticalAlignment: Text.AlignVCenter
    }

    spacing: 4
    Accessible.role: Accessible.StaticText
    Accessible.name: before + key + after

    Repeater {
        model: sentence.before.split(" ").filter(word => word !== "")
        delegate: Word {}
    }
    KbdCap {
        text: sentence.key
        height: 24
    }
    Repeater {
        model: sentence.after.split(" ").filter(word => word !== "")
        delegate: Word {}
    }
}
