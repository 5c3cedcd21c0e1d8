// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Rectangle {
    id: glyph

    property bool shown: false

    border.color: Qt.rgba(1, 1, 1, 0.25)
    color: Qt.rgba(0, 0, 0, 0.6)
    height: 48
    opacity: shown ? 1 : 0
    radius: 24
    visible: opacity > 0
    width: 48

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quick
        }
    }

    Icon {
        anchors.centerIn: parent
        anchors.horizontalCenterOffset: 1
        color: "white"
        name: "play.fill"
        size: 22
    }
}
