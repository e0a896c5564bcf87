// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// One step of several: passed, there, or still to come.
Plane {
    property bool active: false
    property bool passed: false

    implicitWidth: active ? 20 : 8
    implicitHeight: 8
    radius: 4
    color: active ? Theme.accent : passed ? Theme.accent : Theme.mark
    opacity: passed && !active ? 0.5 : 1
}
