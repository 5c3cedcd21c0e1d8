// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Tavelo

// Everything over the film: the film itself lies beneath this item.
FocusScope {
    id: screen

    required property var app // an AppState

    readonly property var playback: app.playback
    readonly property var player: playback.player
    property bool showControls: true
    readonly property bool controlsShown: showControls || !player.isPlaying

    signal fullScreenToggled()

    function poke() {
        showControls = true;
        rest.restart();
    }

    Accessible.name: playback.nowPlaying?.title ?? ""
    Accessible.role: Accessible.Pane
    focus: true

    Component.onCompleted: forceActiveFocus()

    Timer {
        id: rest

        interval: 3000

        onTriggered: controls.busy ? restart() : screen.showControls = false
    }
    PlayerKeys {
        enabled: !controls.menuOpen
        player: screen.player

        onFullScreenToggled: screen.fullScreenToggled()
        onLeave: screen.app.showPlayer = false
    }
    PlayerPointer {
        id: hover

        anchors.fill: parent
        cursorHidden: !screen.controlsShown

        onDoubleClicked: screen.fullScreenToggled()
        onMoved: screen.poke()
        onToggled: screen.player.toggle()
    }
    SubtitleOverlay {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 90
        anchors.horizontalCenter: parent.horizontalCenter
        maximumWidth: parent.width - 2 * Theme.inset
        text: screen.playback.subtitles.currentText
    }
    Rectangle {
        anchors.centerIn: parent
        color: Theme.material
        height: 96
        radius: 14
        visible: screen.player.isBuffering
        width: 96

        Spinner {
            anchors.centerIn: parent
            size: 48
        }
    }
    ErrorPanel {
        anchors.centerIn: parent
        message: screen.player.error
        visible: screen.player.error !== ""
        width: Math.min(420, parent.width - 2 * Theme.inset)

        onClose: screen.app.closePlayer()
        onRetry: screen.player.retry()
    }
    Item {
        anchors.fill: parent
        opacity: screen.controlsShown ? 1 : 0
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation {
                duration: 200
                easing.type: Easing.InOutQuad
            }
        }

        PlayerTopBar {
            title: screen.playback.nowPlaying?.title ?? ""
            width: parent.width

            onBack: screen.app.showPlayer = false
        }
        PlayerControls {
            id: controls

            anchors.bottom: parent.bottom
            player: screen.player
            subtitles: screen.playback.subtitles
            width: parent.width

            onFullScreenToggled: screen.fullScreenToggled()
        }
    }
}
