// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A capsule with one line in it, or the permission card. On each change of state the old content fades out
/// while the new one fades in and the capsule takes its size.
Item {
    id: view

    required property HUDModel model
    property real micLevel
    property bool translucent
    property bool isShown
    signal permissionDismiss
    signal permissionOpenSettings

    readonly property rect outline: Qt.rect(capsule.x, capsule.y, capsule.width, capsule.height)
    readonly property alias outlineRadius: capsule.radius

    readonly property bool listens: state === "listening"
    readonly property bool works: state === "transcribing" || state === "translating"
    readonly property bool notifies: state === "notice"
    readonly property bool asks: state === "permissionRequired"
    readonly property Item content: listens ? listening : works ? working : notifies ? notice : asks ? card : null

    // The size stays while there is nothing to show.
    onContentChanged: {
        if (content)
            capsule.content = content;
    }

    component EaseOut: NumberAnimation {
        duration: Theme.motion
        easing.type: Easing.OutQuad
    }

    Surface {
        id: capsule

        property Item content: listening

        anchors.centerIn: parent
        width: Math.min(view.width, content.implicitWidth)
        height: Math.min(view.height, content.implicitHeight)
        radius: Math.min(height / 2, 24)
        color: view.translucent ? Theme.overlay : Theme.overlayOpaque
        outline: Theme.overlayOutline

        Behavior on width {
            enabled: view.translucent && view.isShown
            EaseOut {}
        }
        Behavior on height {
            enabled: view.translucent && view.isShown
            EaseOut {}
        }
    }

    Item {
        anchors.fill: capsule
        clip: true // contents that fade out may be larger

        ListeningLine {
            id: listening
            anchors.centerIn: parent
            shown: view.listens
            animating: view.isShown && view.listens
            model: view.model
            level: view.micLevel
        }
        BadgeLine {
            id: working
            anchors.centerIn: parent
            shown: view.works
            line: view.model.line
            SpinnerBadge { running: view.isShown && view.works }
        }
        BadgeLine {
            id: notice
            anchors.centerIn: parent
            shown: view.notifies
            line: view.model.line
            Symbol {
                anchors.centerIn: parent
                size: 22
                name: view.model.noticeSymbol
                color: view.model.warns ? Theme.warn : Theme.info
            }
        }
        PermissionCard {
            id: card
            anchors.centerIn: parent
            shown: view.asks
            animating: view.isShown && view.asks
            model: view.model
            onDismiss: view.permissionDismiss()
            onOpenSettings: view.permissionOpenSettings()
        }
    }
}
