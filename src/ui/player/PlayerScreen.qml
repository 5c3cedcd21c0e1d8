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

    function takeKeys() {
        keys.forceActiveFocus();
    }
    function poke() {
        showControls = true;
        rest.restart();
    }

    Accessible.name: playback.nowPlaying?.title ?? ""
    Accessible.role: Accessible.Pane
    focus: true

    // The controls are reached by Tab also when they rest.
    Keys.onBacktabPressed: event => {
        poke();
        event.accepted = false;
    }
    Keys.onTabPressed: event => {
        poke();
        event.accepted = false;
    }
    Component.onCompleted: if (visible) takeKeys()
    onControlsShownChanged: if (!controlsShown) keys.focus = true // no key presses what is not seen
    onVisibleChanged: {
        if (visible)
            return takeKeys();
        rest.stop();
        showControls = true;
        hover.last = Qt.point(-1, -1);
    }

    Timer {
        id: rest

        interval: 3000

        onTriggered: controls.busy ? restart() : screen.showControls = false
    }
    PlayerKeys {
        id: keys

        enabled: screen.visible && !controls.menuOpen
        player: screen.player

        onFullScreenToggled: screen.fullScreenToggled()
        onLeave: screen.app.showPlayer = false
    }
    // Over the film and its controls alike: what lies above something hides the pointer from it.
    HoverHandler {
        id: hover

        property point last: Qt.point(-1, -1) // where the pointer was, in the window

        // Also told, without a movement, for every frame that changes what lies below.
        onPointChanged: {
            if (point.scenePosition === last)
                return;
            const moved = last.x >= 0; // and not just found where it rests
            last = point.scenePosition;
            if (moved)
                screen.poke();
        }
    }
    PlayerPointer {
        anchors.fill: parent
        cursorHidden: !screen.controlsShown

        onDoubleClicked: screen.fullScreenToggled()
        onToggled: screen.player.toggle()
    }
    SubtitleOverlay {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 90
        anchors.horizontalCenter: parent.horizontalCenter
        maximumWidth: parent.width - 2 * Theme.inset
        text: screen.playback.subtitles.currentText
    }
    Delay {
        id: stall

        interval: 300
        waiting: screen.player.isBuffering
    }
    WaitPanel {
        maximumWidth: parent.width - 2 * Theme.inset
        reason: screen.player.trouble
        visible: stall.over
        x: Math.round((parent.width - width) / 2)
        y: Math.round((parent.height - restHeight) / 2)
    }
    ErrorPanel {
        anchors.centerIn: parent
        goesOnTrying: screen.player.goesOnTrying
        message: screen.player.error
        visible: screen.player.error !== ""
        width: Math.min(420, parent.width - 2 * Theme.inset)

        onClose: screen.app.closePlayer()
        onRetry: screen.player.retry()
    }
    Item {
        anchors.fill: parent
        opacity: screen.controlsShown ? 1 : 0
        visible: screen.controlsShown || opacity > 0

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
    // On top, where a press is known of whoever takes it: the keys are the film's again.
    Item {
        anchors.fill: parent

        PointHandler {
            acceptedButtons: Qt.AllButtons

            onActiveChanged: if (active) screen.takeKeys()
        }
    }
}
