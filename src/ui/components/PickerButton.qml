// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A framed button whose menu drops down from it; `text` is what is picked, `value` what was.
PopupButton {
    id: button

    property string value: ""

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: 10
    rightPadding: 8
    tipped: false

    Accessible.description: value
    Keys.onDownPressed: menu.open()

    background: Rectangle {
        border.color: Theme.hairline
        color: button.down || button.menuOpen ? Theme.fillPressed
                                              : button.hovered ? Theme.fillHovered : Theme.fill
        radius: 7

        FocusRing {
            radius: parent.radius + 2
            shown: button.visualFocus
        }
    }
    contentItem: PickerLabel {
        text: button.text
        value: button.value
    }
}
