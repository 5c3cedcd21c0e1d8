// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.Slider {
    id: slider

    property color trackColor: Qt.rgba(1, 1, 1, 0.18)

    activeFocusOnTab: true
    implicitHeight: 20
    implicitWidth: 90
    live: true
    opacity: enabled ? 1 : 0.5
    padding: 0

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
        enabled: slider.enabled
    }

    background: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: slider.trackColor
            height: 4
            radius: 2
            width: parent.width
        }
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.accent
            height: 4
            radius: 2
            width: slider.enabled ? slider.handle.x + slider.handle.width / 2 : 0
        }
    }
    handle: Rectangle {
        readonly property bool big: slider.pressed || slider.hovered || slider.visualFocus

        color: "white"
        height: width
        radius: width / 2
        scale: big ? 1 : 0.75
        visible: slider.enabled
        width: 14
        x: slider.visualPosition * (slider.width - width)
        y: (slider.height - height) / 2

        Behavior on scale {
            NumberAnimation {
                duration: Theme.quick
            }
        }
        FocusRing {
            radius: height / 2
            shown: slider.visualFocus
        }
    }
}
