// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Rectangle {
    id: bar

    required property string title

    signal back()

    height: 60 + 28

    gradient: Gradient {
        GradientStop {
            color: Qt.rgba(0, 0, 0, 0.7)
            position: 0
        }
        GradientStop {
            color: "transparent"
            position: 1
        }
    }

    Shield {
    }

    PushButton {
        id: back

        symbol: "chevron.left"
        text: qsTr("Back")
        x: 14
        y: 14

        onClicked: bar.back()
    }
    Label {
        anchors.left: back.right
        anchors.leftMargin: 14
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: back.verticalCenter
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignLeft
        text: bar.title
    }
}
