// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Turns a shelf's page. For the pointer only: the keyboard has its arrows.
IconButton {
    required property bool forward
    property bool shown: false

    activeFocusOnTab: false
    anchors.margins: 6
    focusPolicy: Qt.NoFocus
    height: 36
    iconSize: 18
    opacity: shown ? 1 : 0
    plate: Theme.popup
    round: true
    symbol: forward ? "chevron.right" : "chevron.left"
    text: forward ? qsTr("Scroll right") : qsTr("Scroll left")
    visible: opacity > 0
    width: 36
    y: 34 + (210 - height) / 2

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quick
        }
    }
}
