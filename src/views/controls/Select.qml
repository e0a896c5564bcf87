// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// Shows what is chosen, and opens a list to choose from over its window.
/// Of its own type, since before Qt 6.5 screen readers are told that, and of a mere button nothing else. It has the list
/// instead of the type's own model and popup.
T.ComboBox {
    id: select

    property string label ///< what is chosen, as screen readers say it
    property string help
    property var options: []
    property int current: -1
    property real leastWidth: 120
    property bool listOpen: false
    readonly property string text: current >= 0 && current < options.length ? options[current] : ""
    /// As wide whatever is chosen. Not for names in other scripts: to measure them is to load their fonts.
    property bool fitsAll: true
    readonly property real longest: Math.max(0, ...Array.from(fitsAll ? options : [text]).map(option => metrics.advanceWidth(option)))

    signal chosen(int index)

    function open() {
        listOpen = true
    }
    function close(reason) {
        if (!listOpen)
            return
        listOpen = false
        forceActiveFocus(reason)
    }

    implicitWidth: Math.max(leastWidth, 4 * Math.ceil((longest + leftPadding + rightPadding + 24) / 4))
    implicitHeight: 32
    leftPadding: Theme.spacing
    rightPadding: Theme.spacingSmall
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ComboBox
    Accessible.name: label
    Accessible.description: text
    Accessible.onPressAction: open()
    onVisibleChanged: if (!visible) listOpen = false
    // Not when the key goes down: the list would take its repetitions for a choice.
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Space && !event.isAutoRepeat && pressed)
            open()
    }
    Keys.onReturnPressed: open()
    Keys.onEnterPressed: open()
    Keys.onDownPressed: open()
    Keys.onUpPressed: open()

    TapHandler {
        onTapped: select.open()
    }
    FontMetrics {
        id: metrics
        font.family: Theme.fontFamily
        font.pixelSize: Theme.sizeBody
    }

    background: Plane {
        radius: Theme.radiusSmall
        color: select.pressed || select.listOpen ? Theme.fillPressed : select.hovered ? Theme.fillHovered : Theme.fill
        outlineWidth: 1
        outline: Theme.outline

        FocusRing {
            anchors.margins: -3
            radius: Theme.radiusSmall + 3
            shown: select.visualFocus
        }
    }
    contentItem: Item {
        Label {
            anchors { left: parent.left; right: chevron.left; rightMargin: Theme.spacingSmall; verticalCenter: parent.verticalCenter }
            text: select.text
        }
        Symbol {
            id: chevron
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            name: "chevron.down"
            size: 14
            color: Theme.textSecondary
        }
    }

    Loader {
        parent: select.Window.contentItem
        anchors.fill: parent
        active: select.listOpen
        z: 1
        // qmllint disable unqualified
        sourceComponent: SelectList {
            owner: select
            title: select.label
            options: select.options
            current: select.current
            onChosen: index => {
                select.close(Qt.TabFocusReason)
                select.chosen(index)
            }
            onDismissed: reason => select.close(reason)
        }
        // qmllint enable unqualified
    }
}
