// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Rows that belong together.
Surface {
    default property alias rows: column.data

    width: parent?.width ?? 0
    implicitHeight: column.implicitHeight
    height: implicitHeight
    radius: Theme.radiusMedium

    Column {
        id: column
        width: parent.width
    }
}
