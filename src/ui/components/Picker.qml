// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A MenuButton in a form: framed, with its choice and an arrow.
MenuButton {
    id: picker

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: 12
    rightPadding: 10

    background: Rectangle {
        border.color: Theme.hairline
        color: picker.down || picker.menuOpen ? Theme.fillPressed
                                              : picker.hovered ? Theme.fillHovered : Theme.fill
        radius: 7

        FocusRing {
            shown: picker.visualFocus
        }
    }
    contentItem: Row {
        spacing: 8

        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.callout
            text: picker.label
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            name: "chevron.down"
            size: 14
        }
    }
}
