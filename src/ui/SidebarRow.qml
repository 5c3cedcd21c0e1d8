// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.AbstractButton {
    id: row

    required property string symbol
    required property bool current
    property bool ringed: false

    focusPolicy: Qt.NoFocus
    implicitHeight: 36

    Accessible.name: text
    Accessible.role: Accessible.ListItem
    Accessible.selected: current

    background: Rectangle {
        color: row.current ? Theme.fillHovered : row.hovered ? Theme.fill : "transparent"
        radius: 7

        FocusRing {
            around: 0
            radius: 7
            shown: row.ringed
        }
    }
    contentItem: Item {
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: row.current ? Theme.accent : Theme.secondary
            name: row.symbol
            size: 20
            x: 10
        }
        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: row.current || row.hovered ? Theme.primary : Qt.rgba(1, 1, 1, 0.75)
            font.weight: row.current ? Font.DemiBold : Font.Normal
            text: row.text
            width: parent.width - x - 8
            x: 40
        }
    }
}
