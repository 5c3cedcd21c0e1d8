// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// One end of a Stepper; goes on while it is held.
T.AbstractButton {
    id: button

    required property string symbol

    autoRepeat: true
    focusPolicy: Qt.NoFocus
    implicitHeight: 28
    implicitWidth: 36

    Accessible.name: text

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
        enabled: button.enabled
    }

    background: Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        color: button.down ? Theme.fillPressed : button.hovered ? Theme.fillHovered : "transparent"
        radius: 5
    }
    contentItem: ButtonFace {
        opacity: button.enabled ? 1 : 0.35
        symbol: button.symbol
        symbolSize: 16
    }
}
