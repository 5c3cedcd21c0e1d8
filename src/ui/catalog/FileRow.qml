// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: row

    required property var file // an ArchiveFile
    property bool canDownload: false
    property bool canPlay: false
    property bool ruled: false // a line above it

    signal download()
    signal play()

    implicitHeight: 56

    Rectangle {
        color: Theme.hairline
        height: 1
        visible: row.ruled
        width: parent.width - 2 * x
        x: 16
    }
    Column {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: buttons.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            elide: Text.ElideMiddle
            text: row.file.name
            width: parent.width
        }
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: row.file.format + " · " + row.file.sizeText
            width: parent.width
        }
    }
    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.grid

        PushButton {
            Accessible.description: row.file.name
            prominent: true
            symbol: "play.fill"
            text: qsTr("Play")
            visible: row.canPlay

            onClicked: row.play()
        }
        IconButton {
            Accessible.description: row.file.name
            symbol: "arrow.down.circle"
            text: qsTr("Save to Downloads")
            visible: row.canDownload

            onClicked: row.download()
        }
    }
}
