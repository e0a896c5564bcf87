// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Talvera

/// The licences of something that the program is made with, to be read: by the wheel, by the keys that scroll, and by a
/// screen reader passage after passage.
Item {
    id: page

    required property ThirdPartyLicences licences
    readonly property bool wantsKeyboard: true
    readonly property real sides: Math.max(Theme.spacingHuge, 4 * Math.round((width - 720) / 8))

    function takeKeyboard() {
        frame.forceActiveFocus(Qt.OtherFocusReason)
    }

    Accessible.role: Accessible.Pane
    Accessible.name: head.text

    SmallButton {
        id: back
        x: page.sides
        y: Theme.spacingHuge
        text: page.licences.backText
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: back.clicked()
        onClicked: page.licences.close()
    }
    Label {
        id: head
        anchors { left: parent.left; right: parent.right; top: back.bottom; margins: page.sides; topMargin: Theme.spacing }
        text: page.licences.name
        font.pixelSize: Theme.sizeLarge
        strong: true
        wrapMode: Text.Wrap
        Accessible.ignored: false
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Caption {
        id: licence
        anchors { left: parent.left; right: parent.right; top: head.bottom; margins: page.sides; topMargin: Theme.spacingTiny }
        text: page.licences.licence
        wrapMode: Text.Wrap
        Accessible.ignored: false
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Plane {
        anchors { left: frame.left; right: frame.right; bottom: frame.top }
        height: 1
        color: Theme.separator
    }
    // It has the keyboard for the view, since it knows how it came by it.
    T.Control {
        id: frame
        anchors { left: parent.left; right: parent.right; top: licence.bottom; bottom: parent.bottom; margins: page.sides; topMargin: Theme.spacing; bottomMargin: 0 }
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.List
        Accessible.name: head.text
        Keys.forwardTo: [reader]

        FocusRing {
            anchors { leftMargin: -Theme.spacing; rightMargin: -Theme.spacing; topMargin: 4; bottomMargin: 4 }
            radius: Theme.radiusSmall
            shown: frame.visualFocus
        }
        contentItem: ListView {
            id: reader

            function scroll(by) {
                contentY = Math.max(originY - topMargin, Math.min(contentY + by, originY + contentHeight + bottomMargin - height))
            }

            clip: true
            model: page.licences.passages
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            highlightFollowsCurrentItem: false
            onContentYChanged: currentIndex = Math.max(0, indexAt(0, contentY + Theme.spacingLarge)) // the one to be read
            topMargin: Theme.spacingSmall
            bottomMargin: Theme.spacingHuge
            Keys.onDownPressed: scroll(40)
            Keys.onUpPressed: scroll(-40)
            Keys.onSpacePressed: scroll(height - 40)
            Keys.onPressed: event => {
                event.accepted = true
                if (event.key === Qt.Key_PageDown)
                    scroll(height - 40)
                else if (event.key === Qt.Key_PageUp)
                    scroll(40 - height)
                else if (event.key === Qt.Key_Home)
                    positionViewAtBeginning()
                else if (event.key === Qt.Key_End)
                    positionViewAtEnd()
                else
                    event.accepted = false
            }

            // qmllint disable unqualified
            delegate: Caption {
                required property string modelData
                required property int index

                width: ListView.view.width
                text: modelData
                color: Theme.text
                wrapMode: Text.Wrap
                Accessible.ignored: false
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.trim()
                Accessible.focusable: true
                Accessible.focused: ListView.isCurrentItem && frame.activeFocus
            }
            // qmllint enable unqualified
        }
    }
    ScrollMark {
        view: reader
        within: frame
        anchors { right: parent.right; rightMargin: 3 }
    }
}
