// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Pressable {
    id: segment

    required property string symbol
    required property bool chosen

    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.role: Accessible.RadioButton

    HoverTip {
        text: segment.text
        wanted: segment.hovered && !segment.down
    }

    background: Rectangle {
        color: segment.chosen ? Qt.rgba(1, 1, 1, 0.16) : segment.hovered ? Theme.fill : "transparent"
        radius: 5

        FocusRing {
            radius: parent.radius + 2
            shown: segment.visualFocus
        }
    }
    contentItem: ButtonFace {
        ink: segment.chosen ? Theme.primary : Theme.secondary
        symbol: segment.symbol
        symbolSize: 18
    }
}
