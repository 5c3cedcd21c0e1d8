// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// Back, play or pause, forward.
RowLayout {
    id: transport

    required property var player // a VideoPlayerManager
    property int iconSize: 20
    property int playSize: iconSize

    IconButton {
        iconSize: transport.iconSize
        symbol: "gobackward.10"
        text: qsTr("Back 10 seconds")

        onClicked: transport.player.seekBy(-10)
    }
    IconButton {
        iconSize: transport.playSize
        symbol: transport.player.isPlaying ? "pause.fill" : "play.fill"
        text: transport.player.isPlaying ? qsTr("Pause") : qsTr("Play")

        onClicked: transport.player.toggle()
    }
    IconButton {
        iconSize: transport.iconSize
        symbol: "goforward.10"
        text: qsTr("Forward 10 seconds")

        onClicked: transport.player.seekBy(10)
    }
}
