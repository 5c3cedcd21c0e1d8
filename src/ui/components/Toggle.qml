// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A switch at the far end of its label: a line, and a smaller one below it.
T.Switch {
    id: toggle

    property string caption: ""

    activeFocusOnTab: true
    focusPolicy: Qt.TabFocus
    implicitHeight: implicitContentHeight
    implicitWidth: implicitContentWidth
    rightPadding: 56
    spacing: 0

    Accessible.description: caption
    Accessible.name: text
    Keys.onEnterPressed: toggle.press()
    Keys.onReturnPressed: toggle.press()

    // As by Space or the mouse.
    function press() {
        toggle.toggle();
        toggle.toggled();
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    contentItem: Column {
        spacing: 3

        Label {
            Accessible.ignored: true
            text: toggle.text
            width: parent.width
        }
        Label {
            Accessible.ignored: true
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: toggle.caption
            visible: text !== ""
            width: parent.width
        }
    }
    indicator: Rectangle {
        color: toggle.checked ? Theme.accent : toggle.hovered ? Qt.rgba(1, 1, 1, 0.22)
                                                              : Qt.rgba(1, 1, 1, 0.16)
        implicitHeight: 22
        implicitWidth: 38
        radius: height / 2
        x: toggle.width - width
        y: Math.round((toggle.height - height) / 2)

        FocusRing {
            around: 4
            radius: parent.radius + 4
            shown: toggle.visualFocus
        }
        Rectangle {
            color: "white"
            height: width
            radius: width / 2
            width: 18
            x: toggle.checked ? parent.width - width - 2 : 2
            y: 2

            Behavior on x {
                NumberAnimation {
                    duration: Theme.quick
                }
            }
        }
    }
}
