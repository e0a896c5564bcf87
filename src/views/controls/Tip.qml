// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// Words beside what the pointer rests on, for what says nothing by itself. It goes over all of its parent, and in
/// front of whatever else takes the pointer there.
Item {
    id: tip

    property string text
    property bool above: false ///< where it stands, if there is room
    property Item clearOf: tip ///< what it stands above or below
    readonly property bool open: bubble.active

    anchors.fill: parent

    HoverHandler {
        id: pointer
        onHoveredChanged: rested.restart()
    }
    Timer {
        id: rested

        property bool over: false

        interval: 600
        onTriggered: over = pointer.hovered
    }
    Loader {
        id: bubble

        active: rested.over && pointer.hovered && tip.visible && tip.text !== "" && tip.Window.visibility !== Window.Hidden

        // qmllint disable unqualified
        sourceComponent: Window {
            id: plane

            readonly property int gap: 6
            readonly property point place: tip.mapToGlobal(0, 0)
            readonly property real upperEdge: tip.clearOf.mapToGlobal(0, 0).y
            readonly property real lowest: tip.Screen.virtualY + tip.Screen.height - height
            readonly property real over: upperEdge - gap - height
            readonly property real under: upperEdge + tip.clearOf.height + gap

            flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowTransparentForInput | Qt.WindowDoesNotAcceptFocus
            color: Theme.translucent ? "transparent" : Theme.overlayOpaque
            width: 4 * Math.ceil((words.width + 2 * Theme.spacingSmall) / 4)
            height: 4 * Math.ceil((words.height + 2 * Theme.spacingTiny) / 4)
            x: Math.round(Math.max(tip.Screen.virtualX, Math.min(place.x + (tip.width - width) / 2,
                                                                 tip.Screen.virtualX + tip.Screen.width - width)))
            y: Math.round(tip.above || under > lowest ? over : under)
            visible: true

            Plane {
                anchors.fill: parent
                radius: Theme.translucent ? Theme.radiusSmall : 0
                color: Theme.overlayOpaque
                outlineWidth: 1
                outline: Theme.overlayOutline
            }
            Caption {
                id: words
                anchors.centerIn: parent
                width: Math.min(Math.ceil(implicitWidth), 260)
                text: tip.text
                color: Theme.text
                wrapMode: Text.Wrap
            }
        }
        // qmllint enable unqualified
    }
}
