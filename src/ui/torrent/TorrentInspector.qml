// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// What is known of one torrent, and the ways to hand it on.
FocusScope {
    id: inspector

    required property var app // an AppState

    readonly property string title: torrent.name

    signal dismissed()

    implicitHeight: column.implicitHeight

    TorrentInspectorModel {
        id: torrent

        info: inspector.app.inspector
    }
    Column {
        id: column

        spacing: 12
        width: parent.width

        RowLayout {
            spacing: 16
            width: parent.width

            Label {
                Layout.fillWidth: true
                font.bold: true
                font.pixelSize: Theme.title2
                heading: true
                maximumLineCount: 2
                text: torrent.name
                wrapMode: Text.Wrap
            }
            PushButton {
                Layout.alignment: Qt.AlignTop
                focus: true
                text: qsTr("Close")

                onClicked: inspector.dismissed()
            }
        }
        SelectableText {
            text: torrent.hashText
            width: parent.width
        }
        IconLabel {
            symbol: "info.circle"
            text: qsTr("Magnet links carry no file list; it's fetched by your torrent client once it joins the swarm.")
            visible: torrent.count === 0
            width: parent.width
        }
        Label {
            font.pixelSize: Theme.callout
            text: torrent.summary
            visible: torrent.count > 0
            width: parent.width
        }
        TorrentFileList {
            files: torrent
            visible: torrent.count > 0
            width: parent.width
        }
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: torrent.trackersText
            width: parent.width
        }
        IconLabel {
            color: Theme.warning
            pixelSize: Theme.caption
            symbol: "hand.raised"
            text: qsTr("This app does not download or seed torrents itself. Opening hands the link to the BitTorrent app you've chosen on this Mac; that app controls downloading and seeding.")
            width: parent.width
        }
        TorrentHandOver {
            app: inspector.app
            torrent: torrent
        }
    }
}
