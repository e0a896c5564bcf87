// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// What keeps Talvera from working, each with the way to its cure.
Plane {
    id: banner

    required property MenuPanelModel readiness

    implicitHeight: content.implicitHeight + 2 * Theme.spacing - 4
    radius: Theme.radiusSmall
    color: Theme.warnFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: readiness.bannerTitle

    component Issue: Item {
        id: issue

        property alias text: what.text
        property alias cure: button.text
        signal fix()

        width: parent ? parent.width : 0
        implicitHeight: Math.max(28, what.implicitHeight + 2 * Theme.spacingTiny)

        Label {
            id: what
            anchors { left: parent.left; leftMargin: Theme.iconColumn; right: button.left; rightMargin: Theme.spacingSmall }
            anchors.verticalCenter: parent.verticalCenter
            wrapMode: Text.Wrap
        }
        SmallButton {
            id: button
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            Accessible.description: what.text
            onClicked: issue.fix()
        }
    }

    Column {
        id: content
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.spacingSmall; topMargin: 10 }
        spacing: 2

        Item {
            width: parent.width
            implicitHeight: Math.max(20, title.implicitHeight)

            Symbol {
                y: 1
                name: "exclamationmark.triangle.fill"
                color: Theme.warn
                size: 18
                x: -1
            }
            Label {
                id: title
                anchors { left: parent.left; leftMargin: Theme.iconColumn; right: parent.right }
                text: banner.readiness.bannerTitle
                strong: true
                wrapMode: Text.Wrap
            }
        }
        Issue {
            visible: banner.readiness.microphoneMissing
            text: banner.readiness.texts.allowMicrophone
            cure: banner.readiness.texts.fix
            onFix: banner.readiness.fixMicrophone()
        }
        Issue {
            visible: banner.readiness.accessibilityMissing
            text: banner.readiness.texts.allowAccessibility
            cure: banner.readiness.texts.fix
            onFix: banner.readiness.fixAccessibility()
        }
    }
}
