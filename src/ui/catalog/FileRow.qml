// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: row

    required property var file // an ArchiveFile
    property bool canPlay: false
    property bool ruled: false // a line above it

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
        anchors.right: button.left
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
    PushButton {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: row.canPlay ? 12 : 0
        anchors.verticalCenter: parent.verticalCenter
        Accessible.description: row.file.name
        prominent: true
        symbol: "play.fill"
        text: qsTr("Play")
        visible: row.canPlay
        width: visible ? implicitWidth : 0

        onClicked: row.play()
    }
}
