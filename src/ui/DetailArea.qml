// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The chosen section's screen with the mini player below it, or the player.
FocusScope {
    id: area

    required property var app // an AppState
    required property bool watching

    readonly property bool playing: !!app.playback.nowPlaying
    property bool settled: false // after the start

    signal fullScreenToggled()

    clip: true

    Timer {
        interval: 1500
        running: true

        onTriggered: area.settled = true
    }
    Rectangle {
        anchors.fill: parent
        color: area.watching ? "black" : Theme.bg
    }
    SectionStack {
        anchors.bottom: mini.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        app: area.app
        focus: !area.watching
        visible: !area.watching
    }
    Lazy {
        id: mini

        anchors.bottom: parent.bottom
        app: area.app
        file: "player/MiniPlayer.qml"
        height: wanted ? 92 : 0
        wanted: area.playing && !area.watching
        width: parent.width
    }
    // One surface for both places: the engine draws on without a pause. It stays when the film is
    // over, for the engine lets go of it slowly while the window waits.
    Lazy {
        app: area.app
        file: "player/FilmFrame.qml"
        foreseen: area.settled || status === Loader.Ready
        height: area.watching ? area.height : 72
        wanted: area.playing
        width: area.watching ? area.width : 128
        x: area.watching ? 0 : 10
        y: area.watching ? 0 : mini.y + 10
    }
    Lazy {
        id: player

        anchors.fill: parent
        app: area.app
        file: "player/PlayerScreen.qml"
        focus: area.watching
        foreseen: area.settled
        wanted: area.watching
    }
    Connections {
        function onFullScreenToggled() {
            area.fullScreenToggled();
        }

        ignoreUnknownSignals: true
        target: player.item
    }
}
