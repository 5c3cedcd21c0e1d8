// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A borderless symbol; `text` is its name and its tooltip.
Pressable {
    id: button

    required property string symbol
    property color color: Theme.primary
    property int iconSize: 20
    property color plate: "transparent"
    property bool ringed: visualFocus
    property bool round: false

    implicitHeight: iconSize + 12
    implicitWidth: iconSize + 12
    opacity: enabled ? 1 : 0.4

    HoverTip {
        text: button.text
        wanted: button.hovered && !button.down
    }

    background: Rectangle {
        color: button.down ? Theme.fillPressed : button.hovered ? Theme.fillHovered : button.plate
        radius: button.round ? height / 2 : 6

        FocusRing {
            radius: parent.radius + 2
            shown: button.ringed
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            color: button.color
            name: button.symbol
            size: button.iconSize
        }
    }
}
