// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One of our drawn symbols, in one colour and crisp at every size.
Image {
    property string name
    property color color: Theme.text
    property int size: 16

    width: size
    height: size
    sourceSize { width: size; height: size }
    cache: false // each is small and drawn once
    source: name ? "image://symbol/" + name + "/" + color : ""
    Accessible.ignored: true
}
