// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A button that opens a menu. `label` stands in the place of a symbol, `text` is its name.
Pressable {
    id: button

    property string symbol: ""
    property string label: ""
    property bool tipped: true // its name shows as a tip
    required property T.Menu menu
    readonly property bool menuOpen: menu.visible

    implicitHeight: 32
    implicitWidth: Math.max(32, implicitContentWidth + 12)

    Accessible.role: Accessible.ButtonMenu
    onClicked: button.menuOpen ? button.menu.close() : button.menu.open()

    HoverTip {
        text: button.text
        wanted: button.tipped && button.hovered && !button.menuOpen
    }

    background: Rectangle {
        color: button.down || button.menuOpen ? Theme.fillHovered
                                              : button.hovered ? Theme.fill : "transparent"
        radius: 6

        FocusRing {
            shown: button.visualFocus
        }
    }
    contentItem: ButtonFace {
        symbol: button.symbol
        symbolSize: 20
        text: button.label
    }
}
