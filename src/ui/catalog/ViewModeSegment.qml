// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.AbstractButton {
    id: segment

    required property string symbol
    required property bool chosen

    activeFocusOnTab: true
    focusPolicy: Qt.TabFocus

    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.name: text
    Accessible.role: Accessible.RadioButton
    Keys.onEnterPressed: segment.clicked()
    Keys.onReturnPressed: segment.clicked()

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
    Tip {
        delay: 600
        text: segment.text
        visible: segment.hovered && !segment.down
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
