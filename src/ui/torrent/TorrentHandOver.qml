// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What can be done with the torrent: by its link, and by its file where it came from one.
Row {
    id: row

    required property var app // an AppState
    required property TorrentInspectorModel torrent

    readonly property bool linked: torrent.magnet !== ""

    spacing: Theme.grid

    PushButton {
        prominent: true
        text: qsTr("Open in Torrent App")
        visible: row.linked

        onClicked: row.app.openMagnet(row.torrent.magnet)
    }
    PushButton {
        text: qsTr("Copy Magnet")
        visible: row.linked

        onClicked: Clipboard.setText(row.torrent.magnet)
    }
    PushButton {
        text: qsTr("Open .torrent in App")
        visible: row.torrent.hasFile

        onClicked: row.app.openTorrentFile(row.torrent.fileURL, row.torrent.infoHash)
    }
    PushButton {
        text: qsTr("Reveal")
        visible: row.torrent.hasFile

        onClicked: row.app.showTorrentFile(row.torrent.fileURL, row.torrent.infoHash)
    }
}
