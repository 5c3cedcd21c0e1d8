// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What can be done with a download, at its row's right end.
Row {
    id: buttons

    required property var task // a DownloadTask
    required property Item ringed // the one that the keys are at

    readonly property alias remover: cross
    readonly property var shown: [
        task.isPaused || task.canPause ? turn : null,
        task.canRetry ? retry : null,
        task.isFinished ? play : null,
        task.isFinished ? folder : null,
        cross
    ].filter(button => button)

    signal pause()
    signal resume()
    signal cancel()
    signal playFilm()
    signal showInFolder()

    spacing: 6

    IconButton {
        id: turn

        Accessible.name: text + " " + buttons.task.title
        activeFocusOnTab: false
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        iconSize: 18
        ringed: buttons.ringed === turn
        symbol: buttons.task.isPaused ? "play.fill" : "pause.fill"
        text: buttons.task.isPaused ? qsTr("Resume") : qsTr("Pause")
        visible: buttons.shown.includes(turn)

        onClicked: buttons.task.isPaused ? buttons.resume() : buttons.pause()
    }
    PushButton {
        id: retry

        Accessible.name: text + " " + buttons.task.title
        activeFocusOnTab: false
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        ringed: buttons.ringed === retry
        symbol: "arrow.clockwise"
        text: buttons.task.isTroubled ? qsTr("Retry") : qsTr("Retry Now")
        visible: buttons.shown.includes(retry)

        onClicked: buttons.resume()
    }
    PushButton {
        id: play

        Accessible.name: text + " " + buttons.task.title
        activeFocusOnTab: false
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        ringed: buttons.ringed === play
        symbol: "play.fill"
        text: qsTr("Play")
        visible: buttons.shown.includes(play)

        onClicked: buttons.playFilm()
    }
    IconButton {
        id: folder

        Accessible.name: text + ": " + buttons.task.title
        activeFocusOnTab: false
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        iconSize: 18
        ringed: buttons.ringed === folder
        symbol: "folder"
        text: qsTr("Show in Folder")
        visible: buttons.shown.includes(folder)

        onClicked: buttons.showInFolder()
    }
    IconButton {
        id: cross

        Accessible.name: text + " " + buttons.task.title
        activeFocusOnTab: false
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        focusPolicy: Qt.NoFocus
        iconSize: 16
        ringed: buttons.ringed === cross
        symbol: "xmark"
        text: qsTr("Cancel / remove")

        onClicked: buttons.cancel()
    }
}
