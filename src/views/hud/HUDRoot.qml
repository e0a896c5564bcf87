// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The content of the HUD's window.
Item {
    id: root

    required property HUDModel model
    /// What lies below the window shines through it. Else the window is cut to `outline`, and nothing may fade
    /// that has nothing behind it.
    property bool translucent: true
    property bool isShown: false

    /// The part of the window that is not empty.
    readonly property alias outline: view.outline
    readonly property alias outlineRadius: view.outlineRadius
    readonly property color backdrop: Theme.overlayOpaque

    width: 560
    height: 72

    Accessible.role: Accessible.AlertMessage
    Accessible.name: model.spoken
    Accessible.ignored: model.state === "hidden"

    DictationHUDView {
        id: view
        anchors.fill: parent
        state: root.model.state
        micLevel: root.model.level
        model: root.model
        translucent: root.translucent
        isShown: root.isShown
        onPermissionDismiss: root.model.dismissPermission()
        onPermissionOpenSettings: root.model.openPermissionSettings()

        opacity: !root.translucent || root.model.state !== "hidden" ? 1 : 0
        Behavior on opacity {
            NumberAnimation { duration: Theme.motion; easing.type: Easing.OutQuad }
        }
    }
}
