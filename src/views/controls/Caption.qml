// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What explains a label.
Label {
    color: Theme.textSecondary
    font.pixelSize: Theme.sizeSmall
    lineHeight: wrapMode === Text.NoWrap ? 1 : 1.1
}
