// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Pressable {
    id: button

    property bool borderless: false
    property bool prominent: false
    property string symbol: ""
    property bool small: false
    property bool ringed: visualFocus

    implicitHeight: small ? 28 : 32
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: small ? 12 : 14
    opacity: enabled ? 1 : 0.4
    rightPadding: leftPadding

    background: Rectangle {
        border.color: button.prominent || button.borderless ? "transparent" : Theme.hairline
        color: button.prominent ? Theme.accent
               : button.down ? Theme.fillPressed
               : button.hovered ? Theme.fillHovered
               : button.borderless ? "transparent" : Theme.fill
        radius: button.small ? height / 2 : 7

        Rectangle {
            anchors.fill: parent
            color: button.down ? Qt.rgba(0, 0, 0, 0.18) : Qt.rgba(1, 1, 1, 0.12)
            radius: parent.radius
            visible: button.prominent && (button.down || button.hovered)
        }
        FocusRing {
            around: button.prominent ? 4 : 2 // a gap tells it from a button of its colour
            radius: parent.radius + around
            shown: button.ringed
        }
    }
    contentItem: ButtonFace {
        ink: button.prominent ? Theme.accentInk : button.borderless ? Theme.accent : Theme.primary
        pixelSize: button.small ? Theme.caption : Theme.callout
        symbol: button.symbol
        text: button.text
        weight: button.prominent ? Font.DemiBold : Font.Medium
    }
}
