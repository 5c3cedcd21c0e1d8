// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The film, with rounded corners while it is the mini player's small picture.
PlayerSurface {
    id: frame

    required property var app // an AppState

    player: app.playback.player

    onVisibleChanged: if (visible) update() // not with the picture that was there before

    Rectangle {
        anchors.fill: parent
        anchors.margins: -4
        border.color: Theme.panel
        border.width: 4
        color: "transparent"
        radius: 10
        visible: !frame.app.showPlayer
    }
}
