// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What can be done wherever the user is.
QtObject {
    id: commands

    required property var app // an AppState

    readonly property var player: app.playback.player

    signal fullScreenToggled()
    signal menuAsked()
    signal quitAsked()

    readonly property Command playPause: Command {
        keys: "Ctrl+P"
        text: qsTr("Play / Pause")

        onTriggered: commands.player.toggle()
    }
    readonly property Command skipBack: Command {
        keys: "Ctrl+Left"
        repeats: true
        text: qsTr("Skip Back 10s")

        onTriggered: commands.player.seekBy(-10)
    }
    readonly property Command skipForward: Command {
        keys: "Ctrl+Right"
        repeats: true
        text: qsTr("Skip Forward 10s")

        onTriggered: commands.player.seekBy(10)
    }
    readonly property Command volumeUp: Command {
        keys: "Ctrl+Up"
        repeats: true
        text: qsTr("Volume Up")

        onTriggered: commands.player.adjustVolume(0.1)
    }
    readonly property Command volumeDown: Command {
        keys: "Ctrl+Down"
        repeats: true
        text: qsTr("Volume Down")

        onTriggered: commands.player.adjustVolume(-0.1)
    }
    readonly property Command mute: Command {
        keys: "Ctrl+Shift+M"
        text: qsTr("Mute")

        onTriggered: commands.player.isMuted = !commands.player.isMuted
    }
    readonly property Command fullScreen: Command {
        keys: "F11"
        text: qsTr("Full Screen")

        onTriggered: commands.fullScreenToggled()
    }
    readonly property Shortcut otherFullScreen: Shortcut {
        autoRepeat: false
        context: Qt.ApplicationShortcut
        sequence: "Ctrl+Meta+F"

        onActivated: commands.fullScreen.trigger()
    }
    readonly property Command stop: Command {
        keys: "Ctrl+."
        text: qsTr("Stop")

        onTriggered: commands.app.closePlayer()
    }
    readonly property Command menu: Command {
        keys: "F10"
        text: qsTr("Menu")

        onTriggered: commands.menuAsked()
    }
    readonly property Command quit: Command {
        keys: "Ctrl+Q"
        text: qsTr("Quit")

        onTriggered: commands.quitAsked()
    }
}
