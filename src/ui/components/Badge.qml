// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A small word on a capsule.
Rectangle {
    property alias text: label.text

    color: Theme.fillHovered
    implicitHeight: label.implicitHeight + 6
    implicitWidth: label.implicitWidth + 16
    radius: height / 2

    Label {
        id: label

        anchors.centerIn: parent
        color: Theme.secondary
        font.pixelSize: Theme.caption2
    }
}
