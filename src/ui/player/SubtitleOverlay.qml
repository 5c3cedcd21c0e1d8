// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The text of the current cue, as wide as it needs, on its own ground.
Rectangle {
    id: overlay

    required property string text
    property real maximumWidth: Infinity

    color: Qt.rgba(0, 0, 0, 0.6)
    height: label.height + 8
    radius: 6
    visible: text !== ""
    width: label.width + 20

    Label {
        id: label

        anchors.centerIn: parent
        color: "white"
        elide: Text.ElideNone
        font.pixelSize: Theme.title2
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        text: overlay.text
        width: Math.min(Math.ceil(implicitWidth), overlay.maximumWidth - 20)
        wrapMode: Text.Wrap
    }
}
