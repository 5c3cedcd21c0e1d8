// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A button whose menu offers one choice out of several. `label` stands in the place of a symbol.
T.AbstractButton {
    id: button

    property string symbol: ""
    property string label: ""
    required property var choices // of { text, value }
    property var current
    readonly property bool menuOpen: menu.visible

    signal chosen(var value)

    activeFocusOnTab: true
    focusPolicy: Qt.TabFocus
    implicitHeight: 32
    implicitWidth: Math.max(32, implicitContentWidth + 12)

    Accessible.name: text
    Accessible.role: Accessible.ButtonMenu
    Keys.onEnterPressed: button.clicked()
    Keys.onReturnPressed: button.clicked()
    onClicked: menu.visible ? menu.close() : menu.open()

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
    Tip {
        delay: 600
        text: button.text
        visible: button.hovered && !menu.visible
    }
    ChoiceMenu {
        id: menu

        choices: button.choices
        current: button.current
        x: button.width - width
        y: -height - 8

        onChosen: value => button.chosen(value)
    }

    background: Rectangle {
        color: button.down || menu.visible ? Theme.fillHovered
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
