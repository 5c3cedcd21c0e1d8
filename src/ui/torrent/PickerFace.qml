// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// The button of a menu that drops down from it; `text` is what is picked, `value` what was.
T.AbstractButton {
    id: face

    required property T.Menu menu
    property string value: ""

    activeFocusOnTab: true
    implicitHeight: 30
    leftPadding: 10
    rightPadding: 8

    Accessible.description: value
    Accessible.name: text
    Accessible.role: Accessible.ButtonMenu
    Keys.onDownPressed: menu.open()
    Keys.onEnterPressed: face.clicked()
    Keys.onReturnPressed: face.clicked()
    onClicked: menu.visible ? menu.close() : menu.open()

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    background: Rectangle {
        border.color: Theme.hairline
        color: face.down || face.menu.visible ? Theme.fillPressed
                                              : face.hovered ? Theme.fillHovered : Theme.fill
        radius: 7

        FocusRing {
            radius: parent.radius + 2
            shown: face.visualFocus
        }
    }
    contentItem: PickerLabel {
        text: face.text
        value: face.value
    }
}
