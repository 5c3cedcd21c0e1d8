// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

ListRow {
    id: row

    required property var record // a DownloadTask

    readonly property bool underway: record.isUnderway

    signal pause(var id)
    signal resume(var id)
    signal cancel(var id)
    signal play(var task)

    buttons: underway ? [turn, cross] : record.isFinished ? [action, cross] : [cross]
    implicitHeight: texts.height + 28
    remover: cross

    Accessible.name: record.title

    Column {
        id: texts

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: controls.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        Label {
            text: row.record.title
            width: parent.width
        }
        ProgressBar {
            Accessible.name: row.record.title
            value: row.record.progress
            visible: row.underway
            width: parent.width
        }
        Label {
            color: row.underway || row.record.isFinished ? Theme.secondary : Theme.warning
            elide: row.record.isFinished ? Text.ElideMiddle : Text.ElideRight
            font.pixelSize: Theme.caption
            maximumLineCount: row.record.isFinished ? 1 : 3
            text: row.record.status
            width: parent.width
            wrapMode: row.record.isFinished ? Text.NoWrap : Text.Wrap
        }
    }
    RowLayout {
        id: controls

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        IconButton {
            id: turn

            Accessible.name: text + " " + row.record.title
            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            iconSize: 18
            ringed: row.ringed === turn
            symbol: row.record.isPaused ? "play.fill" : "pause.fill"
            text: row.record.isPaused ? qsTr("Resume") : qsTr("Pause")
            visible: row.underway

            onClicked: row.record.isPaused ? row.resume(row.record.id) : row.pause(row.record.id)
        }
        PushButton {
            id: action

            Accessible.name: text + " " + row.record.title
            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            ringed: row.ringed === action
            symbol: "play.fill"
            text: qsTr("Play")
            visible: row.record.isFinished

            onClicked: row.play(row.record)
        }
        IconButton {
            id: cross

            Accessible.name: text + " " + row.record.title
            activeFocusOnTab: false
            color: Theme.secondary
            focusPolicy: Qt.NoFocus
            iconSize: 16
            ringed: row.ringed === cross
            symbol: "xmark"
            text: qsTr("Cancel / remove")

            onClicked: row.cancel(row.record.id)
        }
    }
}
