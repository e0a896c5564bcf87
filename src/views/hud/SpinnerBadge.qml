// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A Spinner in the place of a badge.
Item {
    id: badge

    property bool running: false

    width: 28
    height: 28

    Spinner {
        anchors.centerIn: parent
        turns: badge.running
    }
}
